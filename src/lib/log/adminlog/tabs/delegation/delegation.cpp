#include "log/adminlog/tabs/delegation/delegation.h"

#include "log/adminlog/tabs/common/policy_page.h"
#include "log/adminlog/tabs/delegation/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::delegation {

namespace {

constexpr char kApi[] = "MERO.PostCubeServer.Delegation";

constexpr PolicyTemplates kTemplates = {kSettingChanged, kMembersEdited, kRenamed};

constexpr Word kPermissions[] = {
    {"none", Label{"delegation", "permission_none"}},
    {"read", Label{"delegation", "permission_read"}},
    {"write", Label{"delegation", "permission_write"}},
};

constexpr Setting kSettings[] = {
    {Label{"delegation", "enable"}, "enable", IsEnable},
    {Label{"delegation", "description"}, "description", nullptr},
    {Label{"delegation", "account_permission"}, "account_permission", PermissionText},
    {Label{"delegation", "domain_permission"}, "domain_permission", PermissionText},
    {Label{"delegation", "log_permission"}, "log_permission", PermissionText},
    {Label{"delegation", "monitor_permission"}, "monitor_permission", PermissionText},
    {Label{"delegation", "queue_permission"}, "queue_permission", PermissionText},
    {Label{"delegation", "security_permission"}, "security_permission", PermissionText},
};

}  // namespace

Json::Value DelegationInfo(Json::Value const& /*params*/) {
    return PoliciesById(kApi);
}

Json::Value DelegationEditInfo(Json::Value const& params) {
    return PolicyRecord(kApi, params);
}

Json::Value DiffDelegation(Json::Value& old_info, Json::Value& params) {
    return DiffPolicyRecord(old_info, params);
}

std::string PermissionText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kPermissions);
}

StatementRows TranslateDeletedDelegationName(std::string const& statement,
                                             Json::Value const& old_info, Json::Value const& params,
                                             Json::Value const& /*diff*/,
                                             Json::Value const& /*body*/) {
    return statement == kDeleted ? DeletedPolicyNames(old_info, params) : Ignore();
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    return TranslatePolicyEdit(kTemplates, statement, old_info, params, diff,
                               MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::delegation
