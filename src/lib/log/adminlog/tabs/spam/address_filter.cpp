#include "log/adminlog/tabs/spam/address_filter.h"

#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::spam {

namespace {

constexpr Word kTypes[] = {
    {"sender", Label{"security", "sender_is"}},
    {"recipient", Label{"security", "receiver_is"}},
};

constexpr Word kActions[] = {
    {"spam", Label{"spam", "blacklist_rule"}},
    {"non_spam", Label{"spam", "whitelist_rule"}},
};

constexpr Word kLists[] = {
    {"spam", Label{"spam", "blacklist_type"}},
    {"non_spam", Label{"spam", "whitelist_type"}},
};

StatementRow Rule(Json::Value const& rule) {
    return {FilterTypeText("type", rule), GetKeyVal(rule, "pattern"),
            FilterActionText("action", rule)};
}

StatementRow OldRule(Json::Value const& params) {
    return {FilterTypeText("org_type", params), GetKeyVal(params, "org_pattern"),
            FilterActionText("org_action", params)};
}

}  // namespace

std::string FilterTypeText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kTypes);
}

std::string FilterActionText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kActions);
}

StatementRows TranslateAddFilter(std::string const& statement, Json::Value const& /*old_info*/,
                                 Json::Value const& params, Json::Value const& /*diff*/,
                                 Json::Value const& /*body*/) {
    return statement == kFilterCreated ? EntryRows(params["filter_list"], Rule) : Ignore();
}

StatementRows TranslateDelFilter(std::string const& statement, Json::Value const& /*old_info*/,
                                 Json::Value const& params, Json::Value const& /*diff*/,
                                 Json::Value const& /*body*/) {
    return statement == kFilterDeleted ? EntryRows(params["delete_list"], Rule) : Ignore();
}

StatementRows TranslateEditFilter(std::string const& statement, Json::Value const& /*old_info*/,
                                  Json::Value const& params, Json::Value const& /*diff*/,
                                  Json::Value const& /*body*/) {
    StatementRow row = OldRule(params);
    StatementRow const rule = Rule(params);
    if (statement != kFilterChanged || row == rule) {
        return Ignore();
    }
    row.insert(row.end(), rule.begin(), rule.end());
    return {row};
}

StatementRows TranslateImportFilter(std::string const& statement, Json::Value const& /*old_info*/,
                                    Json::Value const& params, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    if (statement != kFilterImported) {
        return Ignore();
    }
    return {{WordText(GetKeyVal(params, "action"), kLists), GetKeyVal(params, "file")}};
}

StatementRows TranslateExportFilter(std::string const& statement, Json::Value const& /*old_info*/,
                                    Json::Value const& /*params*/, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    return statement == kFiltersExported ? NoReplace() : Ignore();
}

}  // namespace serverlog::log::adminlog::spam
