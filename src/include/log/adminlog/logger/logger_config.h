#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/log/adminlog/logger/tab_log.h>

#include <json/value.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace serverlog::log::adminlog {

/// Loads the state before the call from the request's parameters: an object or null. Its member
/// "force_log" is the one that means something to the logger: true has the operation logged even
/// when the call fails.
using InfoFunction = std::function<Json::Value(Json::Value const& params)>;

/// Compares the old state with the parameters. Both are writable: what it leaves in `params` is
/// what the line shows as the call's parameters.
using DiffFunction = std::function<Json::Value(Json::Value& old_info, Json::Value& params)>;

/// Gives one row for each statement to write from the template `statement`; element i of a row is
/// the value of the placeholder %i%. No row, no statement. `body` is the response's body.
using TranslateFunction = std::function<std::vector<std::vector<std::string>>(
    std::string const& statement, Json::Value const& old_info, Json::Value const& params,
    Json::Value const& diff, Json::Value const& body)>;

/// What the admin log knows about one operation. Built once, then only read.
struct LoggerConfig {
    /// Any of the three functions may be empty.
    LoggerConfig(std::string operation, std::vector<TabLog> groups, InfoFunction load,
                 DiffFunction compare, TranslateFunction compose)
        : name(std::move(operation)),
          tabs(std::move(groups)),
          info(std::move(load)),
          diff(std::move(compare)),
          translate(std::move(compose)) {}

    const std::string name;             ///< the operation's key, such as "Webapi_Domain_Set"
    const std::vector<TabLog> tabs;     ///< in the order of writing; empty for an unknown operation
    const InfoFunction info;            ///< called once, before the call
    const DiffFunction diff;            ///< called once, after the call
    const TranslateFunction translate;  ///< called once for each template; empty: the text is fixed
};

/// Finds the rules of an operation.
///
/// @param name  the operation's key, with or without a version behind it ("Webapi_Domain_Set_v1");
///              case counts
/// @return a value of the caller's own; for an unknown operation one with an empty name, no tabs
/// and
///         no functions, since a call without rules is simply not logged
///
/// Throws nothing but std::bad_alloc. Safe to call from several threads at once.
MAILSERVER_LOG_EXPORT LoggerConfig GetConfig(std::string const& name);

}  // namespace serverlog::log::adminlog
