#pragma once

#include <json/value.h>

#include <string>

/// Migration tasks go by their name, "task_name". A request that renames one gives the name before
/// as "ori_task_name"; one without that creates a task where it can.
namespace serverlog::log::adminlog::migrate {

/// The task's name before the call.
///
/// Never throws for a wrong type.
std::string OldTaskName(Json::Value const& params);

/// What a method of the migration's web API gives for the task under its name before the call.
///
/// @param query  further parameters for the method
///
/// Throws Exception<ETag::SDK> when the web API fails.
Json::Value LoadTask(char const* method, Json::Value const& params,
                     Json::Value query = Json::objectValue);

}  // namespace serverlog::log::adminlog::migrate
