#include "log/adminlog/tabs/migrate/task.h"

#include "log/adminlog/tabs/migrate/templates.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::migrate {

StatementRows TranslateDel(std::string const& statement, Json::Value const& /*old_info*/,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    return statement == kTaskDeleted ? TextRows(params["items"]) : Ignore();
}

StatementRows TranslateUserDel(std::string const& statement, Json::Value const& /*old_info*/,
                               Json::Value const& params, Json::Value const& /*diff*/,
                               Json::Value const& /*body*/) {
    if (statement != kUserDeleted) {
        return Ignore();
    }
    std::string const task = GetKeyVal(params, "task_name");
    return EntryRows(params["user_list"], [&task](Json::Value const& user) {
        return StatementRow{user.asString(), task};
    });
}

StatementRows TranslateUserEdit(std::string const& statement, Json::Value const& /*old_info*/,
                                Json::Value const& params, Json::Value const& /*diff*/,
                                Json::Value const& /*body*/) {
    if (statement != kUsersImported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "file"), GetKeyVal(params, "task_name")}};
}

StatementRows TranslateMigrateOperation(std::string const& statement,
                                        Json::Value const& /*old_info*/, Json::Value const& params,
                                        Json::Value const& /*diff*/, Json::Value const& /*body*/) {
    if (statement != kTaskStarted && statement != kTaskStopped && statement != kLogExported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "task_name")}};
}

}  // namespace serverlog::log::adminlog::migrate
