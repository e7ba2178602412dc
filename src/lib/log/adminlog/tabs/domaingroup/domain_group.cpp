#include "log/adminlog/tabs/domaingroup/domain_group.h"

#include "log/adminlog/tabs/domain/domain_members.h"
#include "log/adminlog/tabs/domaingroup/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"
#include "utils/merosdk/group.h"

namespace serverlog::log::adminlog::domaingroup {

namespace {

constexpr Word kRoles[] = {
    {"normal", Label{"domain", "normal_user"}},
    {"domain_admin", Label{"domain", "domain_admin"}},
};

constexpr Setting kSettings[] = {{Label{"domain", "role"}, "role", RoleText}};

}  // namespace

Json::Value GroupInfo(Json::Value const& params) {
    return domain::DomainWithMembers(params, "MERO.PostCubeServer.Domain.Group", "groups");
}

Json::Value DiffGroup(Json::Value& old_info, Json::Value& params) {
    Json::Value const group =
        TryGetObjectVal(TryGetObjectVal(old_info, "groups"), TryGetKeyVal(params, "id"));
    return group.isObject() ? DefaultDiff(group, params) : Json::Value();
}

std::string RoleText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kRoles);
}

StatementRows TranslateDel(std::string const& statement, Json::Value const& old_info,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    if (statement != kDeleted) {
        return Ignore();
    }
    StatementRows rows;
    for (Json::Value const& id : params["ids"]) {
        rows.push_back(
            {utils::ZsmGroup(id.asUInt()).GetGroupRealName(), GetKeyVal(old_info, "name")});
    }
    return rows;
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    std::string const id = GetKeyVal(params, "id");
    if (statement != kSettingChanged || !GetObjectVal(old_info, "groups").isMember(id)) {
        return Ignore();
    }
    Json::Value const& group = old_info["groups"][id];
    return MuggleTranslate(group, params, diff,
                           {GetKeyVal(group, "name"), GetKeyVal(old_info, "name")},
                           MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::domaingroup
