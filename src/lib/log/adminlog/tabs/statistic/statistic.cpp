#include "log/adminlog/tabs/statistic/statistic.h"

#include "log/adminlog/tabs/statistic/templates.h"
#include "log/adminlog/toolkit/label.h"

namespace serverlog::log::adminlog::statistic {

StatementRows TranslateExport(std::string const& statement, Json::Value const& /*old_info*/,
                              Json::Value const& /*params*/, Json::Value const& /*diff*/,
                              Json::Value const& /*body*/) {
    if (statement != kReportExported) {
        return Ignore();
    }
    return {{LabelText(Label{"overview", "mail_monitor"})}};
}

}  // namespace serverlog::log::adminlog::statistic
