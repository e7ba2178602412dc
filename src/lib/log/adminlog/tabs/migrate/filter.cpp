#include "log/adminlog/tabs/migrate/filter.h"

#include "log/adminlog/tabs/common/moment_text.h"
#include "log/adminlog/tabs/migrate/old_task.h"
#include "log/adminlog/tabs/migrate/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/settings_page.h"

namespace serverlog::log::adminlog::migrate {

namespace {

constexpr char kUnit[] = " (KB)";

// The text files spell two of these keys so.
constexpr Setting kSettings[] = {
    {Label{"migration", "ignore_earlier"}, "enable_start_time", IsEnable},
    {Label{"migration", "ignore_later"}, "enable_end_time", IsEnable},
    {Label{"migration", "ignore_trash"}, "ignore_trash", IsEnable},
    {Label{"migration", "ignore_junk"}, "ignore_junk", IsEnable},
    {Label{"smtp", "imessage_sze_limit"}, "enable_size_limit", IsEnable, kStatusOf, kUnit},
    {Label{"smtp", "imessage_sze_limit"}, "size_limit", nullptr, "", kUnit},
    {Label{"migration", "enabler_name_filter"}, "enable_folder_name_filter", IsEnable},
    {Label{"migration", "ignore_earlier"}, "start_time", MomentText},
    {Label{"migration", "ignore_later"}, "end_time", MomentText},
    {Label{"migration", "enabler_name_filter"}, "filter_action", nullptr},
};

}  // namespace

Json::Value FilterInfo(Json::Value const& params) {
    return LoadTask("get_filter", params);
}

StatementRows TranslateFilterEdit(std::string const& statement, Json::Value const& old_info,
                                  Json::Value const& params, Json::Value const& diff,
                                  Json::Value const& /*body*/) {
    if (statement != kFilterChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, {GetKeyVal(params, "task_name")},
                           MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::migrate
