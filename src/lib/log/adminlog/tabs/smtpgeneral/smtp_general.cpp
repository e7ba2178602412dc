#include "log/adminlog/tabs/smtpgeneral/smtp_general.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"

namespace serverlog::log::adminlog::smtpgeneral {

namespace {

constexpr Setting kSettings[] = {
    {Label{"smtp", "smtp_auth_enable"}, "enable_smtp_auth", IsEnable},
    {Label{"smtp", "ignore_auth"}, "ignore_lan_auth", IsEnable},
    {Label{"smtp", "sender_mismatch"}, "reject_login_name_mismatch", IsEnable},
    {Label{"smtp", "skip_sender_mismatch"}, "skip_login_mismatch_check", IsEnable},
    {Label{"common", "security_auth"}, "security_auth", IsEnable},
    {Label{"smtp", "smtp_hostname"}, "hostname", nullptr},
    {Label{"smtp", "banner"}, "banner", nullptr},
    {Label{"smtp", "max_recipients"}, "max_recipients", nullptr},
    {Label{"smtp", "max_traveled_hops"}, "max_hops", nullptr},
    // The text files spell this key so.
    {Label{"smtp", "imessage_sze_limit"}, "message_size_limit", nullptr},
};

}  // namespace

Json::Value SmtpInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.SMTP.General", "get");
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::smtpgeneral
