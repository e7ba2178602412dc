#include "log/adminlog/tabs/logs/logs.h"

#include "log/adminlog/tabs/logs/templates.h"
#include "log/adminlog/toolkit/label.h"

namespace serverlog::log::adminlog::logs {

namespace {

StatementRows ExportRow(std::string const& statement, Label const& log) {
    return statement == kExported ? StatementRows{{LabelText(log)}} : Ignore();
}

}  // namespace

StatementRows TranslateAdminLogExport(std::string const& statement, Json::Value const& /*old_info*/,
                                      Json::Value const& /*params*/, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    return ExportRow(statement, Label{"maillog", "admin_log"});
}

StatementRows TranslateMailLogExport(std::string const& statement, Json::Value const& /*old_info*/,
                                     Json::Value const& /*params*/, Json::Value const& /*diff*/,
                                     Json::Value const& /*body*/) {
    return ExportRow(statement, Label{"maillog", "mail_log"});
}

StatementRows TranslateSecurityLogExport(std::string const& statement,
                                         Json::Value const& /*old_info*/,
                                         Json::Value const& /*params*/, Json::Value const& /*diff*/,
                                         Json::Value const& /*body*/) {
    return ExportRow(statement, Label{"maillog", "security_log"});
}

}  // namespace serverlog::log::adminlog::logs
