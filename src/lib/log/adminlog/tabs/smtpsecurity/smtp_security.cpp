#include "log/adminlog/tabs/smtpsecurity/smtp_security.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/settings_page.h"

namespace serverlog::log::adminlog::smtpsecurity {

namespace {

constexpr Label kParallelConnections{"smtp", "max_parallel_conn"};
constexpr Label kMailsPerMinute{"smtp", "max_num_msg"};
constexpr Label kConnectionsPerMinute{"smtp", "max_num_conn_per_min"};
constexpr Label kMailsToUnknownUsers{"smtp", "block_exceed_unknow_user_limit"};
constexpr Label kJunkCommands{"smtp", "max_junk_commands_num"};

constexpr Setting Switch(Label const& label, char const* parameter) {
    return {label, parameter, IsEnable, kStatusOf};
}

constexpr Setting Value(Label const& label, char const* parameter) {
    return {label, parameter, nullptr};
}

constexpr Setting kSettings[] = {
    Switch(Label{"spam", "reject_non_fqdn_sender"}, "reject_non_fqdn_sender"),
    Switch(Label{"spam", "reject_unknown_sender_domain"}, "reject_unknown_sender_domain"),
    Switch(Label{"spam", "reject_unknown_client_hostname"}, "reject_unknown_client_hostname"),
    Switch(kParallelConnections, "enable_max_parallel_conn"),
    Value(kParallelConnections, "max_parallel_conn"),
    Switch(kMailsPerMinute, "enable_max_mails_per_min"),
    Value(kMailsPerMinute, "max_mails_per_min"),
    Switch(kConnectionsPerMinute, "enable_max_conn_per_min"),
    Value(kConnectionsPerMinute, "max_conn_per_min"),
    Switch(Label{"spam", "reject_unauth_pipelining"}, "reject_unauth_pipelining"),
    Switch(Label{"spam", "reject_non_fqdn_helo_hostname"}, "reject_non_fqdn_helo_hostname"),
    Switch(Label{"spam", "reject_unknown_helo_hostname"}, "reject_unknown_helo_hostname"),
    Switch(kMailsToUnknownUsers, "enable_max_unknown_deliver_count"),
    Value(kMailsToUnknownUsers, "max_unknown_deliver_count"),
    Switch(kJunkCommands, "enable_max_junk_command_per_session"),
    Value(kJunkCommands, "max_junk_command_per_session"),
};

}  // namespace

Json::Value SecurityInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.SMTP.Security", "get");
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::smtpsecurity
