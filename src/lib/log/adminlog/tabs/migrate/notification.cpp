#include "log/adminlog/tabs/migrate/notification.h"

#include "log/adminlog/tabs/migrate/old_task.h"
#include "log/adminlog/tabs/migrate/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/settings_page.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::migrate {

namespace {

constexpr char kSuccess[] = "success_notify";
constexpr char kFailure[] = "error_notify";

constexpr Setting kRecipients[] = {
    {Label{"migration", "notify_src"}, "is_to_src", IsEnable},
    {Label{"migration", "notify_dest"}, "is_to_dest", IsEnable},
    {Label{"migration", "notify_zsm"}, "is_to_zsm", IsEnable},
    {Label{"migration", "notify_extr_address"}, "is_to_addr", IsEnable},
    {Label{"migration", "notify_extr_address"}, "addr", nullptr},
};

StatementRows NotifyRows(char const* notification, Label const& label, Json::Value const& old_info,
                         Json::Value const& params, Json::Value const& diff) {
    std::vector<Translator> translators = MakeTranslators(kRecipients);
    translators.push_back({LabelText(label), "enable_notify", IsEnable});
    return MuggleTranslate(GetObjectVal(old_info, notification), GetObjectVal(params, notification),
                           GetObjectVal(diff, notification), {GetKeyVal(params, "task_name")},
                           translators);
}

}  // namespace

Json::Value NotifyInfo(Json::Value const& params) {
    return LoadTask("get_notification", params);
}

Json::Value DiffNotify(Json::Value& old_info, Json::Value& params) {
    Json::Value diff;
    for (char const* notification : {kSuccess, kFailure}) {
        diff[notification] =
            DiffSection(old_info, notification, TryGetObjectVal(params, notification));
    }
    return diff;
}

StatementRows TranslateNotifyEdit(std::string const& statement, Json::Value const& old_info,
                                  Json::Value const& params, Json::Value const& diff,
                                  Json::Value const& /*body*/) {
    if (statement == kSuccessNotifyChanged) {
        return NotifyRows(kSuccess, Label{"migration", "enable_success_notify"}, old_info, params,
                          diff);
    }
    if (statement == kFailureNotifyChanged) {
        return NotifyRows(kFailure, Label{"migration", "enable_failure_notify"}, old_info, params,
                          diff);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::migrate
