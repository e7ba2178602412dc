#pragma once

#include <array>
#include <string_view>

/// The admin log line: one JSON object in the system log for each statement. The logger writes with
/// these constants and the collector reads with them.
///
/// The members stand in the order of kFields behind the head. TAB_TYPE, UID and EXEC_TIME are bare
/// numbers, the others texts. Within a text only the backslash and the double quote are escaped,
/// with a backslash each; line feeds and other control characters stand raw, so a strict JSON
/// parser refuses some lines. SERVER holds the address in round brackets. WEBAPI_PARAM is itself
/// the text of a JSON document and ends with a line feed.
namespace serverlog::log::adminlog::line {

/// What every line starts with.
inline constexpr std::string_view kHead = R"({"id":"MEROPostCube-Server","type":"admin_log")";

inline constexpr std::string_view kTabType = "TAB_TYPE";          ///< signed 32 bits
inline constexpr std::string_view kStatement = "STATEMENT";       ///< text
inline constexpr std::string_view kUser = "USER";                 ///< text, login name
inline constexpr std::string_view kUid = "UID";                   ///< unsigned 32 bits
inline constexpr std::string_view kExecTime = "EXEC_TIME";        ///< seconds since the epoch
inline constexpr std::string_view kIp = "IP";                     ///< text, the caller's address
inline constexpr std::string_view kServer = "SERVER";             ///< text, this host's address
inline constexpr std::string_view kWebapiParam = "WEBAPI_PARAM";  ///< text, a JSON document

/// The members behind the head, in their order.
inline constexpr std::array<std::string_view, 8> kFields = {
    kTabType, kStatement, kUser, kUid, kExecTime, kIp, kServer, kWebapiParam};

/// What every line ends with.
inline constexpr std::string_view kTail = "}";

/// Facility mail with severity emergency, as syslog(3) joins them. The syslog configuration routes
/// by it, so it never changes.
inline constexpr int kPriority = 16;

}  // namespace serverlog::log::adminlog::line
