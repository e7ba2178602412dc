#include "log/adminlog/tabs/domainuser/domain_user.h"

#include "log/adminlog/tabs/domain/domain_members.h"
#include "log/adminlog/tabs/domaingroup/domain_group.h"
#include "log/adminlog/tabs/domainuser/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <mailserver/user.h>

namespace serverlog::log::adminlog::domainuser {

namespace {

constexpr Setting kSettings[] = {{Label{"domain", "role"}, "role", RoleText}};

bool IsUnderGroupControl(Json::Value const& user) {
    Json::Value const flag = TryGetObjectVal(user, "is_under_group_control");
    return flag.isConvertibleTo(Json::booleanValue) && flag.asBool();
}

/// Puts the addresses that came and went into `changes`.
void CompareAliases(Json::Value const& old_user, Json::Value const& user, Json::Value& changes) {
    Json::Value gone = IndexedEntries(TryGetObjectVal(old_user, "aliases"), "alias");
    changes["add_list"] = Json::arrayValue;
    for (Json::Value const& entry : TryGetObjectVal(user, "aliases")) {
        std::string const alias = TryGetKeyVal(entry, "alias");
        if (gone.isMember(alias)) {
            gone.removeMember(alias);
        } else {
            changes["add_list"].append(alias);
        }
    }
    changes["del_list"] = Json::arrayValue;
    for (std::string const& alias : gone.getMemberNames()) {
        changes["del_list"].append(alias);
    }
}

/// One row for each address that the member `list` of the users' change maps holds.
StatementRows AliasRows(Json::Value const& old_info, Json::Value const& params,
                        Json::Value const& diff, char const* list) {
    std::string const domain = GetKeyVal(old_info, "name");
    Json::Value const& changes = diff["user_list"];
    StatementRows rows;
    for (Json::Value const& user : params["users"]) {
        std::string const id = GetKeyVal(user, "id");
        if (!changes.isMember(id)) {
            continue;
        }
        std::string const name = GetKeyVal(old_info["users"][id], "name");
        for (Json::Value const& alias : changes[id][list]) {
            rows.push_back({alias.asString() + "@" + domain, name, domain});
        }
    }
    return rows;
}

StatementRows SettingRows(Json::Value const& old_info, Json::Value const& params,
                          Json::Value const& diff) {
    std::string const domain = GetKeyVal(old_info, "name");
    Json::Value const& changes = diff["user_list"];
    StatementRows rows;
    for (Json::Value const& user : params["users"]) {
        std::string const id = GetKeyVal(user, "id");
        if (!changes.isMember(id) || !old_info["users"].isMember(id)) {
            continue;
        }
        Json::Value const& old_user = old_info["users"][id];
        StatementRows const changed =
            MuggleTranslate(old_user, user, changes[id], {GetKeyVal(old_user, "name"), domain},
                            MakeTranslators(kSettings));
        rows.insert(rows.end(), changed.begin(), changed.end());
    }
    return rows;
}

}  // namespace

Json::Value UserInfo(Json::Value const& params) {
    return domain::DomainWithMembers(params, "MERO.PostCubeServer.Domain.User", "users");
}

Json::Value TargetMember(Json::Value& /*old_info*/, Json::Value& params) {
    if (!params.isObject() && !params.isNull()) {
        return Json::Value();
    }
    Json::Value const members = TryGetObjectVal(params, "members");
    params["user_list"] = Json::arrayValue;
    params["group_list"] = Json::arrayValue;
    for (Json::Value const& member : members) {
        std::string const type = TryGetKeyVal(member, "type");
        if (type == "user" || type == "group") {
            params[type + "_list"].append(member);
        }
    }
    return Json::Value();
}

Json::Value DiffUser(Json::Value& old_info, Json::Value& params) {
    Json::Value result;
    if (!TryGetObjectVal(old_info, "users").isObject()) {
        return result;
    }
    for (Json::Value user : TryGetObjectVal(params, "users")) {
        std::string const id = TryGetKeyVal(user, "id");
        if (!old_info["users"].isMember(id)) {
            continue;
        }
        Json::Value& old_user = old_info["users"][id];
        if (IsUnderGroupControl(user)) {
            // The group decides, so that whatever role the request names is no change.
            user["role"] = "group";
            old_user["role"] = "group";
        }
        Json::Value changes = DefaultDiff(old_user, user);
        CompareAliases(old_user, user, changes);
        result["user_list"][id] = changes;
    }
    return result;
}

std::string RoleText(std::string const& member, Json::Value const& object) {
    if (GetKeyVal(object, member) == "group") {
        return LabelText(Label{"domain", "follow_group_setting"});
    }
    return domaingroup::RoleText(member, object);
}

StatementRows TranslateAdd(std::string const& statement, Json::Value const& old_info,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    bool const users = statement == kUserAdded;
    if (!users && statement != kGroupAdded) {
        return Ignore();
    }
    StatementRows rows;
    for (Json::Value const& member : params[users ? "user_list" : "group_list"]) {
        rows.push_back({GetKeyVal(member, "name"), GetKeyVal(old_info, "name")});
    }
    return rows;
}

StatementRows TranslateDel(std::string const& statement, Json::Value const& old_info,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    if (statement != kUserDeleted) {
        return Ignore();
    }
    StatementRows rows;
    for (Json::Value const& id : params["ids"]) {
        std::string name;
        getRealUserName(id.asUInt(), name);
        rows.push_back({name, GetKeyVal(old_info, "name")});
    }
    return rows;
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement == kAddressAdded) {
        return AliasRows(old_info, params, diff, "add_list");
    }
    if (statement == kAddressDeleted) {
        return AliasRows(old_info, params, diff, "del_list");
    }
    if (statement == kSettingChanged) {
        return SettingRows(old_info, params, diff);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::domainuser
