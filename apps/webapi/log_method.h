#pragma once

#include <mailserver-log/webapi/api_runner.h>
#include <merodbquery/session.h>

#include <string>

#include "routes.h"

namespace serverlog::endpoint {

/// Refuses a "db_path" that names a file which is no store of a log: opening one as a store would
/// bring it "up to date".
///
/// @param table  the log's main table
///
/// Throws ApiError with kNoPermission.
void RequireStore(const MERO::APIRequest& request, const std::string& table);

/// Runs a method that lists or exports a log.
///
/// @tparam DB  the log's class of stores
/// @tparam T   the method's class, as webapi::RunAPIMethod takes it
template <class DB, class T>
void RunLogMethod(Call& call) {
    merodbquery::Session session = merodbquery::Session::SQLite(":memory:");
    RequireStore(call.request, DB(session).RotateTable());
    webapi::RunAPIMethod<T>(&call.request, &call.response);
}

}  // namespace serverlog::endpoint
