#include "log/adminlog/tabs/domain/usage_limit.h"

#include "log/adminlog/tabs/domain/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::domain {

namespace {

constexpr char const* kLimits[] = {"catch_all", "attachment", "flow", "quota"};

constexpr Setting kAdvancedSettings[] = {
    {Label{"domain", "domain_enable_catch_all"}, "catch_all_enable", IsEnable},
    {Label{"domain", "domain_catch_all_master"}, "catch_all_setting", nullptr},
};

constexpr Setting kUsageLimits[] = {
    {Label{"smtp", "disable_auto_forward"}, "auto_forward", IsEnable},
    // The text files spell this key so.
    {Label{"smtp", "imessage_sze_limit"}, "mail_size", nullptr},
    {Label{"security", "enable_attachment_limit"}, "attachment_enable", IsEnable},
    {Label{"security", "attachment_limit"}, "attachment_setting", nullptr},
    {Label{"security", "enable_flow_limit"}, "flow_enable", IsEnable},
    {Label{"security", "flow_limit"}, "flow_setting", nullptr},
    {Label{"security", "enable_sender_limit"}, "quota_enable", IsEnable},
    {Label{"security", "sender_limit"}, "quota_setting", nullptr},
};

}  // namespace

void FlattenLimit(Json::Value& object, std::string const& name) {
    Json::Value const limit = TryGetObjectVal(object, name);
    if (!limit.isObject()) {
        return;
    }
    object[name + "_enable"] = limit["enable"];
    if (limit.isMember("setting")) {
        object[name + "_setting"] = limit["setting"];
    }
}

Json::Value DiffUsage(Json::Value& old_info, Json::Value& params) {
    for (std::string const name : kLimits) {
        FlattenLimit(old_info, name);
        FlattenLimit(params, name);
    }
    return DefaultDiff(old_info, params);
}

StatementRows TranslateUsageEdit(std::string const& statement, Json::Value const& old_info,
                                 Json::Value const& params, Json::Value const& diff,
                                 Json::Value const& /*body*/) {
    std::string const name = GetKeyVal(old_info, "name");
    if (statement == kAdvancedSettingChanged) {
        return MuggleTranslate(old_info, params, diff, {name}, MakeTranslators(kAdvancedSettings));
    }
    if (statement == kUsageLimitChanged) {
        return MuggleTranslate(old_info, params, diff, {name}, MakeTranslators(kUsageLimits));
    }
    return Ignore();
}

StatementRows TranslateUsageDel(std::string const& statement, Json::Value const& old_info,
                                Json::Value const& params, Json::Value const& /*diff*/,
                                Json::Value const& /*body*/) {
    std::string const name = GetKeyVal(old_info, "name");
    bool const all = params.isMember("delete_all");
    StatementRows rows;
    if (statement == kAllUsageDataCleared && all) {
        rows.push_back({name});
    }
    if (statement == kUsageDataCleared && !all) {
        for (Json::Value const& text : params["delete_list"]) {
            rows.push_back({text.asString(), name});
        }
    }
    return rows;
}

}  // namespace serverlog::log::adminlog::domain
