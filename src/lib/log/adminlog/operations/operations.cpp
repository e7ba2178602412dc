#include <mailserver-log/log/adminlog/logger/flags.h>
#include <mailserver-log/log/adminlog/operations.h>

#include "log/adminlog/tabs/account/account.h"
#include "log/adminlog/tabs/account/templates.h"
#include "log/adminlog/tabs/alias/alias.h"
#include "log/adminlog/tabs/alias/templates.h"
#include "log/adminlog/tabs/antivirus/antivirus_settings.h"
#include "log/adminlog/tabs/antivirus/quarantine.h"
#include "log/adminlog/tabs/antivirus/templates.h"
#include "log/adminlog/tabs/authentication/authentication_settings.h"
#include "log/adminlog/tabs/authentication/dkim_whitelist.h"
#include "log/adminlog/tabs/authentication/templates.h"
#include "log/adminlog/tabs/bcc/bcc.h"
#include "log/adminlog/tabs/bcc/templates.h"
#include "log/adminlog/tabs/contentscan/attachment_filter.h"
#include "log/adminlog/tabs/contentscan/content_scan_settings.h"
#include "log/adminlog/tabs/contentscan/templates.h"
#include "log/adminlog/tabs/delegation/delegation.h"
#include "log/adminlog/tabs/delegation/templates.h"
#include "log/adminlog/tabs/domain/domain_info.h"
#include "log/adminlog/tabs/domain/domain_statements.h"
#include "log/adminlog/tabs/domain/templates.h"
#include "log/adminlog/tabs/domain/usage_limit.h"
#include "log/adminlog/tabs/domaingroup/domain_group.h"
#include "log/adminlog/tabs/domaingroup/templates.h"
#include "log/adminlog/tabs/domainuser/domain_user.h"
#include "log/adminlog/tabs/domainuser/templates.h"
#include "log/adminlog/tabs/license/license.h"
#include "log/adminlog/tabs/license/templates.h"
#include "log/adminlog/tabs/mcp/mcp_rule.h"
#include "log/adminlog/tabs/mcp/mcp_settings.h"
#include "log/adminlog/tabs/mcp/quarantine.h"
#include "log/adminlog/tabs/mcp/templates.h"
#include "log/adminlog/tabs/spam/address_filter.h"
#include "log/adminlog/tabs/spam/assassin_rule.h"
#include "log/adminlog/tabs/spam/greylist.h"
#include "log/adminlog/tabs/spam/keyword_filter.h"
#include "log/adminlog/tabs/spam/keyword_group.h"
#include "log/adminlog/tabs/spam/postscreen.h"
#include "log/adminlog/tabs/spam/reported_mail.h"
#include "log/adminlog/tabs/spam/spam_settings.h"
#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/tabs/userpolicy/templates.h"
#include "log/adminlog/tabs/userpolicy/user_policy.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/statement_rows.h"

namespace serverlog::log::adminlog {

#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...)                           \
    LoggerConfig Get_##key##_Config() {                                                     \
        return LoggerConfig(#key, std::vector<TabLog>{__VA_ARGS__}, info, diff, translate); \
    }
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION

}  // namespace serverlog::log::adminlog
