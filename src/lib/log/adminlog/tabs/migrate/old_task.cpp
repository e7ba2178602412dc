#include "log/adminlog/tabs/migrate/old_task.h"

#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <utility>

namespace serverlog::log::adminlog::migrate {

std::string OldTaskName(Json::Value const& params) {
    std::string const old_name = TryGetKeyVal(params, "ori_task_name");
    return old_name.empty() ? TryGetKeyVal(params, "task_name") : old_name;
}

Json::Value LoadTask(char const* method, Json::Value const& params, Json::Value query) {
    query["task_name"] = OldTaskName(params);
    return LoadOldState("MERO.PostCubeServer.RemoteMigrate", method, query);
}

}  // namespace serverlog::log::adminlog::migrate
