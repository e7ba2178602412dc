#include "log/adminlog/tabs/userpolicy/user_policy.h"

#include "log/adminlog/tabs/common/limit_text.h"
#include "log/adminlog/tabs/common/policy_page.h"
#include "log/adminlog/tabs/userpolicy/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"

namespace serverlog::log::adminlog::userpolicy {

namespace {

constexpr char kApi[] = "MERO.PostCubeServer.UserGroupPolicy";

constexpr PolicyTemplates kTemplates = {kSettingChanged, kMembersEdited, kRenamed};

constexpr Setting kSettings[] = {
    {Label{"policy", "enable"}, "enable", IsEnable},
    {Label{"policy", "description"}, "description", nullptr},
    {Label{"policy", "priority"}, "priority", nullptr},
    {Label{"policy", "allow_smtp"}, "allow_smtp", IsEnable},
    {Label{"policy", "allow_imap"}, "allow_imap", IsEnable},
    {Label{"policy", "allow_pop3"}, "allow_pop3", IsEnable},
    {Label{"policy", "allow_webmail"}, "allow_webmail", IsEnable},
    {Label{"policy", "allow_auto_forward"}, "allow_auto_forward", IsEnable},
    {Label{"policy", "allow_auto_reply"}, "allow_auto_reply", IsEnable},
    {Label{"policy", "mail_size_limit"}, "mail_size_limit", SizeLimitText},
    {Label{"policy", "attachment_limit"}, "attachment_limit", SizeLimitText},
    {Label{"policy", "daily_mail_limit"}, "daily_mail_limit", CountLimitText},
    {Label{"policy", "daily_traffic_limit"}, "daily_traffic_limit", SizeLimitText},
};

}  // namespace

Json::Value PolicyInfo(Json::Value const& /*params*/) {
    return PoliciesById(kApi);
}

Json::Value PolicyEditInfo(Json::Value const& params) {
    return PolicyRecord(kApi, params);
}

Json::Value DiffPolicy(Json::Value& old_info, Json::Value& params) {
    return DiffPolicyRecord(old_info, params);
}

StatementRows TranslateDeletedPolicyName(std::string const& statement, Json::Value const& old_info,
                                         Json::Value const& params, Json::Value const& /*diff*/,
                                         Json::Value const& /*body*/) {
    return statement == kDeleted ? DeletedPolicyNames(old_info, params) : Ignore();
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    return TranslatePolicyEdit(kTemplates, statement, old_info, params, diff,
                               MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::userpolicy
