#include "log/adminlog/tabs/domain/domain_statements.h"

#include "log/adminlog/tabs/domain/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"

#include <algorithm>

namespace serverlog::log::adminlog::domain {

namespace {

constexpr Setting kSettings[] = {
    {Label{"domain", "domain_name"}, "name", nullptr},
    {Label{"domain", "description"}, "desc", nullptr},
    {Label{"domain", "is_automatically_adding_users"}, "is_automatically_adding_users", IsEnable},
    {Label{"domain", "default_email_address_pattern"}, "default_alias_pattern", AliasPatternText},
    {Label{"domain", "custom_variables"}, "custom_variables", nullptr},
};

constexpr Setting kDkimSettings[] = {
    {Label{"security", "enable_dkim_signing"}, "enable_dkim_sign", IsEnable},
    {Label{"security", "dkim_selector"}, "dkim_selector", nullptr},
};

}  // namespace

std::string AliasPatternText(std::string const& member, Json::Value const& object) {
    std::string const pattern = GetKeyVal(object, member);
    if (pattern == "<m>") {
        return LabelText(Label{"default_account_alias", "mail_nickname"});
    }
    if (pattern == "<a>") {
        return LabelText(Label{"default_account_alias", "account_name"});
    }
    return LabelText(Label{"search", "custom_condition"});
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, {GetKeyVal(old_info, "name")},
                           MakeTranslators(kSettings));
}

StatementRows TranslateDkimEdit(std::string const& statement, Json::Value const& old_info,
                                Json::Value const& params, Json::Value const& diff,
                                Json::Value const& /*body*/) {
    if (statement != kAdvancedSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, {GetKeyVal(old_info, "name")},
                           MakeTranslators(kDkimSettings));
}

StatementRows TranslateDel(std::string const& statement, Json::Value const& old_info,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    if (statement != kDeleted) {
        return Ignore();
    }
    return IdentifiedRows(params["domain_ids"], "domain_id", old_info, MembersOf({"name"}));
}

StatementRows TranslateSetPrimary(std::string const& statement, Json::Value const& old_info,
                                  Json::Value const& params, Json::Value const& /*diff*/,
                                  Json::Value const& /*body*/) {
    std::string const id = GetKeyVal(params, "domain_id");
    if (statement != kPrimarySet || !old_info.isMember(id)) {
        return Ignore();
    }
    return {{GetKeyVal(old_info[id], "name")}};
}

StatementRows TranslateAdditionalOperation(std::string const& statement,
                                           Json::Value const& old_info, Json::Value const& params,
                                           Json::Value const& /*diff*/,
                                           Json::Value const& /*body*/) {
    if (statement != kAdditionalCreated && statement != kAdditionalDeleted) {
        return Ignore();
    }
    StatementRows rows;
    for (Json::Value const& domain : params["additional_domains"]) {
        rows.push_back({domain.asString(), GetKeyVal(old_info, "name")});
    }
    return rows;
}

StatementRows TranslateAdditionalEdit(std::string const& statement, Json::Value const& old_info,
                                      Json::Value const& params, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    if (statement != kAdditionalChanged ||
        !CheckParams(params, {"org_additional_domains", "new_additional_domains"})) {
        return Ignore();
    }
    Json::Value const& old_domains = params["org_additional_domains"];
    Json::Value const& new_domains = params["new_additional_domains"];
    StatementRows rows;
    for (Json::ArrayIndex i = 0; i < std::min(old_domains.size(), new_domains.size()); ++i) {
        rows.push_back(
            {old_domains[i].asString(), GetKeyVal(old_info, "name"), new_domains[i].asString()});
    }
    return rows;
}

StatementRows TranslateGenerateDkimKey(std::string const& statement, Json::Value const& old_info,
                                       Json::Value const& /*params*/, Json::Value const& /*diff*/,
                                       Json::Value const& /*body*/) {
    if (statement != kDkimKeyGenerated) {
        return Ignore();
    }
    return {{LabelText(Label{"security", "dkim_key"}), GetKeyVal(old_info, "name")}};
}

}  // namespace serverlog::log::adminlog::domain
