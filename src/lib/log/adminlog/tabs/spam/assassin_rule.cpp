#include "log/adminlog/tabs/spam/assassin_rule.h"

#include "log/adminlog/tabs/spam/switch_row.h"
#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::spam {

StatementRows TranslateAssassinDelete(std::string const& statement, Json::Value const& /*old_info*/,
                                      Json::Value const& params, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    return statement == kRuleDeleted ? TextRows(params["delete_list"]) : Ignore();
}

StatementRows TranslateAssassinEdit(std::string const& statement, Json::Value const& /*old_info*/,
                                    Json::Value const& params, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    if (statement != kRuleChanged) {
        return Ignore();
    }
    StatementRows rows;
    for (Json::Value const& rule : params["rule_list"]) {
        if (rule.isMember("enabled")) {
            rows.push_back(SwitchRow(GetKeyVal(rule, "name"), rule, "enabled"));
        }
    }
    return rows;
}

StatementRows TranslateAssassinImport(std::string const& statement, Json::Value const& /*old_info*/,
                                      Json::Value const& params, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    if (statement != kRuleImported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "file")}};
}

StatementRows TranslateAssassinExport(std::string const& statement, Json::Value const& /*old_info*/,
                                      Json::Value const& params, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    if (statement != kRuleExported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "rule_name")}};
}

}  // namespace serverlog::log::adminlog::spam
