#include "log/adminlog/tabs/common/policy_page.h"

#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"
#include "utils/json_text.h"

#include <set>

namespace serverlog::log::adminlog {

namespace {

/// What tells a member from any other; the name that is shown for one does not.
std::string Identity(Json::Value const& member) {
    if (!member.isObject() || !member.isMember("id")) {
        return utils::ToJsonText(member);
    }
    return TryGetKeyVal(member, "type") + " " + TryGetKeyVal(member, "id");
}

std::multiset<std::string> Identities(Json::Value const& members) {
    std::multiset<std::string> identities;
    for (Json::Value const& member : members) {
        identities.insert(Identity(member));
    }
    return identities;
}

}  // namespace

Json::Value PoliciesById(char const* api) {
    return IndexedEntries(LoadOldState(api, "list", WholeListQuery())["policies"], "id");
}

Json::Value PolicyRecord(char const* api, Json::Value const& params) {
    Json::Value query;
    query["id"] = TryGetObjectVal(params, "id");
    return LoadOldState(api, "get", query);
}

Json::Value DiffPolicyRecord(Json::Value const& old_info, Json::Value const& params) {
    Json::Value changes = DefaultDiff(old_info, params);
    if (changes.isMember("members") &&
        Identities(old_info["members"]) == Identities(params["members"])) {
        changes.removeMember("members");
    }
    return changes;
}

StatementRows DeletedPolicyNames(Json::Value const& old_info, Json::Value const& params) {
    return IdentifiedRows(params["ids"], "id", old_info, MembersOf({"name"}));
}

StatementRows TranslatePolicyEdit(PolicyTemplates const& templates, std::string const& statement,
                                  Json::Value const& old_info, Json::Value const& params,
                                  Json::Value const& diff,
                                  std::vector<Translator> const& translators) {
    std::string const name = GetKeyVal(old_info, "name");
    if (statement == templates.setting_changed) {
        return MuggleTranslate(old_info, params, diff, {name}, translators);
    }
    if (statement == templates.members_edited && diff.isMember("members")) {
        return {{name}};
    }
    if (statement == templates.renamed && diff.isMember("name")) {
        return {{name, GetKeyVal(params, "name")}};
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog
