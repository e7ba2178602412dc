#include "log/adminlog/tabs/logreport/log_report.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/time_text.h"

namespace serverlog::log::adminlog::logreport {

namespace {

std::string ReportTime(std::string const& /*member*/, Json::Value const& object) {
    return TimeText(object, "report_hours", "report_mins");
}

constexpr Setting kSettings[] = {
    {Label{"report", "enable_report"}, "enable_report", IsEnable},
    {Label{"report", "report_rcpt"}, "rcpt", nullptr},
    {Label{"report", "send_report_time"}, "report_hours", ReportTime},
    {Label{"report", "send_report_time"}, "report_mins", ReportTime},
};

}  // namespace

Json::Value ReportInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Report", "get");
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info,
                           WithOldMembers(old_info, params, {"report_hours", "report_mins"}), diff,
                           MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::logreport
