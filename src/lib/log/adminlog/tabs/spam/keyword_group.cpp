#include "log/adminlog/tabs/spam/keyword_group.h"

#include "log/adminlog/tabs/spam/switch_row.h"
#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::spam {

namespace {

StatementRows StatusRows(Json::Value const& groups) {
    StatementRows rows;
    for (Json::Value const& group : groups) {
        if (group.isMember("new_enabled")) {
            rows.push_back(SwitchRow(GetKeyVal(group, "old_name"), group, "new_enabled"));
        }
    }
    return rows;
}

StatementRows NameRows(Json::Value const& groups) {
    StatementRows rows;
    for (Json::Value const& group : groups) {
        std::string const old_name = GetKeyVal(group, "old_name");
        std::string const new_name = GetKeyVal(group, "new_name");
        if (!old_name.empty() && !new_name.empty() && old_name != new_name) {
            rows.push_back({old_name, new_name});
        }
    }
    return rows;
}

}  // namespace

StatementRows TranslateAddKeyGroup(std::string const& statement, Json::Value const& /*old_info*/,
                                   Json::Value const& params, Json::Value const& /*diff*/,
                                   Json::Value const& /*body*/) {
    if (statement != kKeyGroupCreated) {
        return Ignore();
    }
    return EntryRows(params["group_list"], MembersOf({"name"}));
}

StatementRows TranslateDelKeyGroup(std::string const& statement, Json::Value const& /*old_info*/,
                                   Json::Value const& params, Json::Value const& /*diff*/,
                                   Json::Value const& /*body*/) {
    return statement == kKeyGroupDeleted ? TextRows(params["group_list"]) : Ignore();
}

StatementRows TranslateEditKeyGroup(std::string const& statement, Json::Value const& /*old_info*/,
                                    Json::Value const& params, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    if (statement == kKeyGroupChanged) {
        return StatusRows(params["group_list"]);
    }
    if (statement == kKeyGroupRenamed) {
        return NameRows(params["group_list"]);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::spam
