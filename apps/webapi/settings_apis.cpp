#include "settings_apis.h"

#include <cctype>
#include <stdexcept>
#include <string_view>

namespace serverlog::endpoint {

namespace {

constexpr std::string_view kApiPrefix = "MERO.PostCubeServer.";

constexpr std::string_view kOperations[] = {
#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...) #key,
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION
};

/// Which API the operations of a family belong to.
struct Family {
    std::string_view operations;  ///< what their keys begin with
    std::string_view api;         ///< behind kApiPrefix
    std::string_view method;      ///< of a family of one; else the rest of the key is the method
};

// The longest beginning counts.
constexpr Family kFamilies[] = {
    {"MailboxQuotaAPI_", "MailboxQuota", ""},
    {"MaildirAPI_", "Maildir", ""},
    {"Webapi_Additional_Domain_", "Domain.Additional", ""},
    {"Webapi_Alias_Alias", "Alias", ""},
    {"Webapi_Audit_AdminLog_", "Audit.AdminLog", ""},
    {"Webapi_Audit_SearchTaskResult_", "Audit.SearchTaskResult", ""},
    {"Webapi_Audit_SearchTask_", "Audit.SearchTask", ""},
    {"Webapi_Cluster_Cluster", "Cluster", ""},
    {"Webapi_Delegation_", "Delegation", ""},
    {"Webapi_Disclaimer_", "Disclaimer", ""},
    {"Webapi_Domain_", "Domain", ""},
    {"Webapi_Domain_BCC_", "Domain.BCC", ""},
    {"Webapi_Domain_Group_", "Domain.Group", ""},
    {"Webapi_Domain_Setting_", "Domain.Settings", ""},
    {"Webapi_Domain_User_", "Domain.User", ""},
    {"Webapi_FullTextSearch_", "FullTextSearch", ""},
    {"Webapi_IMAP_POP3_", "IMAP_POP3", ""},
    {"Webapi_IMAP_POP3_Advance_", "IMAP_POP3_ADVANCED", ""},
    {"Webapi_License_", "License", ""},
    {"Webapi_Log_", "Log", ""},
    {"Webapi_Log_Mail_", "Log.Mail", ""},
    {"Webapi_Log_Security_", "Log.Security", ""},
    {"Webapi_MCPQuarantine_", "Security.MCPQuarantine", ""},
    {"Webapi_PostCube_", "PostCube", ""},
    {"Webapi_Queue_", "Queue", ""},
    {"Webapi_RemoteMigrate_", "RemoteMigrate", ""},
    {"Webapi_Report_", "Report", ""},
    {"Webapi_SMTP_", "SMTP.General", ""},
    {"Webapi_SMTP_Delivery_", "SMTP.Delivery", ""},
    {"Webapi_SMTP_General_", "SMTP.General", ""},
    {"Webapi_SMTP_RelayControl_", "SMTP.RelayControl", ""},
    {"Webapi_SMTP_Security_", "SMTP.Security", ""},
    {"Webapi_Security_", "Security", ""},
    // As the methods that read these two are written.
    {"Webapi_Security_SetAntiVirus", "Security", "set_antivirus"},
    {"Webapi_Security_SetAntiVirusTemplate", "Security", "set_anti_virus_template"},
    {"Webapi_Security_SetContentScan", "Security", "set_contentscan"},
    {"Webapi_Security_AttachmentFilter_", "Security.AttachmentFilter", ""},
    {"Webapi_Security_BlackwhiteList_", "Security.BlackwhiteList", ""},
    {"Webapi_Security_DkimTrustSender_", "Security.DkimTrustSender", ""},
    {"Webapi_Security_Greylist_", "Security.Greylist", ""},
    {"Webapi_Security_MCP_", "Security.MCP", ""},
    {"Webapi_Security_PostScreen_", "Security.PostScreen", ""},
    {"Webapi_Service_SMTP_", "Service.SMTP", ""},
    // The second name is the mailbox that the call works on.
    {"Webapi_Spam_ReportedHam_ReportedHam_", "Spam.ReportedHam", ""},
    {"Webapi_Spam_ReportedHam_ReportedSpam_", "Spam.ReportedSpam", ""},
    {"Webapi_Spam_ReportedSpam_ReportedHam_", "Spam.ReportedHam", ""},
    {"Webapi_Spam_ReportedSpam_ReportedSpam_", "Spam.ReportedSpam", ""},
    {"Webapi_Spam_SpamAssassin_", "Spam.SpamAssassin", ""},
    {"Webapi_Statistic_", "Statistic", ""},
    {"Webapi_UserGroupPolicy_", "UserGroupPolicy", ""},
    {"Webapi_VirusQuarantine_", "Security.VirusQuarantine", ""},
};

struct Reading {
    std::string_view api;  ///< behind kApiPrefix
    std::string_view method;
};

// What the operation logger reads the old settings with is what a settings page reads them with.
constexpr Reading kReadings[] = {
    {"Audit.SearchTask", "get"},
    {"Audit.SearchTaskResult", "fetch_mail"},
    {"Cluster", "get_balancer_info"},
    {"Delegation", "get"},
    {"Delegation", "list"},
    {"Domain", "get_security"},
    {"Domain", "list"},
    {"Domain.BCC", "list"},
    {"Domain.Group", "list"},
    {"Domain.Settings", "get"},
    {"Domain.User", "list"},
    {"FullTextSearch", "get"},
    {"IMAP_POP3", "get"},
    {"IMAP_POP3_ADVANCED", "get"},
    {"License", "list_activate_member"},
    {"Log", "conf_get"},
    {"MailboxQuota", "get_system_quota"},
    {"PostCube", "get"},
    {"Queue", "list"},
    {"RemoteMigrate", "get_filter"},
    {"RemoteMigrate", "get_general"},
    {"RemoteMigrate", "get_notification"},
    {"RemoteMigrate", "list_keyword"},
    {"Report", "get"},
    {"SMTP.Delivery", "get_type"},
    {"SMTP.General", "get"},
    {"SMTP.General", "get_postmaster"},
    {"SMTP.Security", "get"},
    {"Security", "get_anti_virus_template"},
    {"Security", "get_antivirus"},
    {"Security", "get_authentication"},
    {"Security", "get_contentscan"},
    {"Security", "get_spam"},
    {"Security.AttachmentFilter", "list"},
    {"Security.BlackwhiteList", "list"},
    {"Security.DkimTrustSender", "list"},
    {"Security.Greylist", "get"},
    {"Security.MCP", "get"},
    {"Security.MCP", "get_bounce_template"},
    {"Security.MCP", "list_rule"},
    {"Security.MCPQuarantine", "get"},
    {"Security.MCPQuarantine", "list"},
    {"Security.PostScreen", "get"},
    {"Security.VirusQuarantine", "get"},
    {"Security.VirusQuarantine", "list"},
    {"ServerList", "list"},
    {"Service.SMTP", "get"},
    {"Spam.ReportedHam", "get"},
    {"Spam.ReportedSpam", "get"},
    {"Spam.SpamAssassin", "list_keyword"},
    {"UserGroupPolicy", "get"},
    {"UserGroupPolicy", "list"},
};

const Family& FamilyOf(std::string_view operation) {
    const Family* longest = nullptr;
    for (const Family& family : kFamilies) {
        const bool fits = operation.substr(0, family.operations.size()) == family.operations &&
                          (family.method.empty() || operation == family.operations);
        if (fits && (longest == nullptr || longest->operations.size() < family.operations.size())) {
            longest = &family;
        }
    }
    if (longest == nullptr) {
        throw std::logic_error("no API has the operation " + std::string(operation));
    }
    return *longest;
}

bool IsUpper(char letter) {
    return std::isupper(static_cast<unsigned char>(letter)) != 0;
}

bool IsLower(char letter) {
    return std::islower(static_cast<unsigned char>(letter)) != 0;
}

// "DeleteAll" and "Set_Type" become "delete_all" and "set_type"; a row of capitals is one word.
std::string InLowerCase(std::string_view name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool begins_word =
            i > 0 && IsUpper(name[i]) &&
            (IsLower(name[i - 1]) ||
             (IsUpper(name[i - 1]) && i + 1 < name.size() && IsLower(name[i + 1])));
        if (begins_word) {
            text += '_';
        }
        text += static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
    }
    return text;
}

std::string ApiName(std::string_view name) {
    return std::string(kApiPrefix) + std::string(name);
}

}  // namespace

std::vector<SettingsMethod> LoggedMethods() {
    std::vector<SettingsMethod> methods;
    for (const std::string_view operation : kOperations) {
        const Family& family = FamilyOf(operation);
        const std::string method = family.method.empty()
                                       ? InLowerCase(operation.substr(family.operations.size()))
                                       : std::string(family.method);
        methods.push_back({ApiName(family.api), method, std::string(operation)});
    }
    return methods;
}

std::vector<SettingsMethod> ReadingMethods() {
    std::vector<SettingsMethod> methods;
    for (const Reading& reading : kReadings) {
        methods.push_back({ApiName(reading.api), std::string(reading.method), ""});
    }
    return methods;
}

}  // namespace serverlog::endpoint
