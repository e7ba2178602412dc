#include "log/adminlog/tabs/smtpgeneral/postmaster.h"

#include "log/adminlog/tabs/common/fixed_word.h"
#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/smtpgeneral/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <set>
#include <utility>

namespace serverlog::log::adminlog::smtpgeneral {

namespace {

constexpr Setting kSettings[] = {
    {Label{"smtp", "enable_external_postmaster"}, "enable_postmaster", IsEnable}};

constexpr FixedWord kKinds[] = {
    {"user", "User"}, {"group", "Group"}, {"external", "External address"}};

/// Type and member: a user and a group may go by one name.
using Identity = std::pair<std::string, std::string>;

Identity IdentityOf(Json::Value const& entry) {
    return {TryGetKeyVal(entry, "type"), TryGetKeyVal(entry, "member")};
}

std::set<Identity> Identities(Json::Value const& list) {
    std::set<Identity> identities;
    for (Json::Value const& entry : list) {
        identities.insert(IdentityOf(entry));
    }
    return identities;
}

/// Appends each entry of `list` that `others` lack to the member `name` of `diff`.
void AddMissing(Json::Value const& list, Json::Value const& others, char const* name,
                Json::Value& diff) {
    std::set<Identity> known = Identities(others);
    for (Json::Value const& entry : list) {
        Identity const identity = IdentityOf(entry);
        bool const complete = !identity.first.empty() && !identity.second.empty();
        if (complete && known.insert(identity).second) {
            diff[name].append(entry);
        }
    }
}

StatementRow KindAndMember(Json::Value const& entry) {
    std::string const kind = FixedWordText(GetKeyVal(entry, "type"), kKinds);
    // Statements spell it so.
    return {kind.empty() ? "Unknwon" : kind, GetKeyVal(entry, "member")};
}

}  // namespace

Json::Value PostmasterInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.SMTP.General", "get_postmaster");
}

Json::Value DiffPostmaster(Json::Value& old_info, Json::Value& params) {
    Json::Value diff = DefaultDiff(old_info, params);
    Json::Value const old_list = TryGetObjectVal(old_info, "postmasters");
    Json::Value const list = TryGetObjectVal(params, "postmasters");
    if (old_list.isArray() && list.isArray()) {
        AddMissing(list, old_list, kAddList, diff);
        AddMissing(old_list, list, kDelList, diff);
    }
    return diff;
}

StatementRows TranslateEditPostmaster(std::string const& statement, Json::Value const& old_info,
                                      Json::Value const& params, Json::Value const& diff,
                                      Json::Value const& /*body*/) {
    if (statement == kPostmasterAdded) {
        return EntryRows(diff[kAddList], KindAndMember);
    }
    if (statement == kPostmasterRemoved) {
        return EntryRows(diff[kDelList], KindAndMember);
    }
    if (statement == kSettingChanged) {
        return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::smtpgeneral
