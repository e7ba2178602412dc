#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/log/adminlog/logger/logger_config.h>

#include <json/value.h>

#include <ctime>
#include <string>
#include <vector>

namespace MERO {
class APIRequest;
class APIResponse;
}  // namespace MERO

namespace serverlog::log::adminlog {

/// Turns one administrator's web API call into lines of the system log, one for each statement.
///
/// Construct it, call PreLog, run the API method, call Log. An operation without rules is not
/// logged and costs nothing. The object owns all it holds, serves one call and belongs to one
/// thread; several objects may work in several threads as far as the API methods that they read
/// may.
class MAILSERVER_LOG_EXPORT Logger {
 public:
    /// @param name    the operation's key, with or without a version behind it
    /// @param params  the request's parameters
    Logger(std::string name, Json::Value params);

    /// Loads the state before the call. To be called before the API method runs; without it the old
    /// state stays null.
    ///
    /// Exception<ETag::Log> and Exception<ETag::SDK> end here with an error line and leave the old
    /// state null; any other exception passes on.
    void PreLog();

    /// Writes the statements. To be called once, after the API method has run; a second call writes
    /// every line again.
    ///
    /// A call that failed writes nothing unless the old state has "force_log". A null pointer
    /// writes one error line and nothing else. The pointers are used during the call only.
    ///
    /// Throws what opening the admin log store throws (Exception<ETag::DB>,
    /// Exception<ETag::FileSystem>) and what the operation's diff function throws; no line has been
    /// written then.
    void Log(MERO::APIRequest* request, MERO::APIResponse* response);

    /// Makes the STATEMENT member of each line of one template, such as `,"STATEMENT":"…"`.
    ///
    /// @param statement  the template; without a translate function it is the text as it stands
    /// @param diff       the difference between old state and parameters
    /// @param body       the response's body
    /// @return one fragment for each line, in order; empty, with an error line, when the translate
    ///         function throws
    std::vector<std::string> ComposeStatement(std::string const& statement, Json::Value const& diff,
                                              Json::Value const& body);

 private:
    bool IsForced() const;
    std::string ComposeTail(MERO::APIRequest& request, std::time_t time) const;

    std::string name_;
    Json::Value params_;
    Json::Value old_info_;
    LoggerConfig config_;
};

}  // namespace serverlog::log::adminlog
