#include "log/adminlog/tabs/service/service.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/service/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"

namespace serverlog::log::adminlog::service {

namespace {

constexpr Setting kSmtpSettings[] = {
    {Label{"smtp", "smtp_enable"}, "enable_smtp", IsEnable},
    {Label{"smtp", "smtp_ssl"}, "enable_smtp_ssl", IsEnable},
    {Label{"smtp", "smtp_tls"}, "enable_smtp_tls", IsEnable},
    {Label{"smtp", "smtp_port"}, "smtp_port", nullptr},
    {Label{"smtp", "smtp_ssl_port"}, "smtp_ssl_port", nullptr},
    {Label{"smtp", "smtp_tls_port"}, "smtp_tls_port", nullptr},
    {Label{"smtp", "account_type"}, "account_type", nullptr},
    {Label{"smtp", "account_type"}, "account_domain_name", nullptr},
};

constexpr Setting kImapPop3Settings[] = {
    {Label{"protocol", "pop3_enable"}, "enable_pop3", IsEnable},
    {Label{"protocol", "pop3s_enable"}, "enable_pop3s", IsEnable},
    {Label{"protocol", "imap_enable"}, "enable_imap", IsEnable},
    {Label{"protocol", "imaps_enable"}, "enable_imaps", IsEnable},
    {Label{"common", "security_auth"}, "security_imappop3_auth", IsEnable},
};

constexpr Setting kImapPop3AdvSettings[] = {
    {Label{"protocol", "max_userip_conn"}, "max_userip_conn", nullptr}};

constexpr Setting kFtsSettings[] = {
    {Label{"fts", "enable_fts"}, "enable_fts", IsEnable},
    {Label{"fts", "support_asia_fts"}, "chinese_support", IsEnable},
};

}  // namespace

Json::Value SmtpInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Service.SMTP", "get");
}

Json::Value ImapPop3Info(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.IMAP_POP3", "get");
}

Json::Value ImapPop3AdvInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.IMAP_POP3_ADVANCED", "get");
}

Json::Value FtsInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.FullTextSearch", "get");
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kSmtpSettings));
}

StatementRows TranslateEditImapPop3(std::string const& statement, Json::Value const& old_info,
                                    Json::Value const& params, Json::Value const& diff,
                                    Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kImapPop3Settings));
}

StatementRows TranslateEditImapPop3Adv(std::string const& statement, Json::Value const& old_info,
                                       Json::Value const& params, Json::Value const& diff,
                                       Json::Value const& /*body*/) {
    if (statement != kAdvancedSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kImapPop3AdvSettings));
}

StatementRows TranslateEditFts(std::string const& statement, Json::Value const& old_info,
                               Json::Value const& params, Json::Value const& diff,
                               Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kFtsSettings));
}

}  // namespace serverlog::log::adminlog::service
