#include "log/adminlog/tabs/migrate/general.h"

#include "log/adminlog/tabs/common/moment_text.h"
#include "log/adminlog/tabs/migrate/old_task.h"
#include "log/adminlog/tabs/migrate/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::migrate {

namespace {

constexpr Setting kGsuiteSettings[] = {
    {Label{"migration", "enable_schedule_task"}, "enable_schedule_task", IsEnable},
    {Label{"migration", "gsuite_service_key"}, "gsuite_key_filename", nullptr},
    {Label{"migration", "enable_schedule_task"}, "schedule_start_time", MomentText},
};

constexpr Setting kServerSettings[] = {
    {Label{"common", "server_address"}, "addr", nullptr},
    {Label{"maillog", "syslog_server_port"}, "port", nullptr},
    {Label{"migration", "enable_ssl"}, "use_ssl", IsEnable},
    {Label{"migration", "imap_path_prefix"}, "enable_imap_path_prefix", IsEnable},
    {Label{"migration", "imap_path_prefix"}, "imap_path_prefix", nullptr},
    {Label{"migration", "enable_schedule_task"}, "enable_schedule_task", IsEnable},
    // The text files spell this key so.
    {Label{"migration", "use_mailbox_delagation"}, "enable_master_user", IsEnable},
    {Label{"common", "account"}, "master_acnt", nullptr},
    {Label{"migration", "enable_schedule_task"}, "schedule_start_time", MomentText},
};

bool IsCreation(Json::Value const& params) {
    return TryGetKeyVal(params, "ori_task_name").empty();
}

std::vector<Translator> TranslatorsFor(Json::Value const& old_info, Json::Value const& params) {
    std::string const type = GetKeyVal(params.isMember("type") ? params : old_info, "type");
    return type == "G Suite" ? MakeTranslators(kGsuiteSettings) : MakeTranslators(kServerSettings);
}

}  // namespace

Json::Value MigrateInfo(Json::Value const& params) {
    return IsCreation(params) ? Json::Value() : LoadTask("get_general", params);
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    std::string const name = GetKeyVal(params, "task_name");
    std::string const old_name = OldTaskName(params);
    if (statement == kTaskCreated && IsCreation(params)) {
        return {{name}};
    }
    if (statement == kTaskChanged) {
        // The new name would tell of a task that the log names only in the statement after these.
        return MuggleTranslate(old_info, params, diff, {old_name},
                               TranslatorsFor(old_info, params));
    }
    if (statement == kTaskRenamed && params.isMember("task_name") && name != old_name) {
        return {{old_name, name}};
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::migrate
