#pragma once

#include <mailserver-log/record/adminlog/admin_log.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

/// Reading of admin log lines (<mailserver-log/log/adminlog/logger/line.h>) as a system log hands
/// them on: behind a syslog prefix or not, with raw control characters within the texts or with
/// those escaped as "#ooo", which is what rsyslog does on receiving.
namespace serverlog::program {

/// An admin log line that can't be read. what() tells why, as part of a sentence.
class LineError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// Where the first admin log record at or behind `from` starts; std::string_view::npos if there is
/// none. A record's head can't occur within a record's text, since quotes are escaped there.
std::size_t FindRecord(std::string_view text, std::size_t from = 0);

/// Whether `text` is nothing but what a system log puts before a message: blanks, a header as
/// RFC 3164 or RFC 5424 has it, or a file's "<time> <host> <program>: ". A priority in it must be
/// that of admin log lines. Without this check a text that some other program logs, such as a
/// sender's address, could pass for a record.
bool IsSyslogPrefix(std::string_view text);

/// Whether `text` starts as each message does in a log whose messages have a prefix: with a
/// priority or a time.
bool StartsWithSyslogTime(std::string_view text);

/// Reads one message that holds a record. What stands behind the record is not looked at.
///
/// Throws LineError.
record::AdminLog ReadAdminLogLine(std::string_view message);

}  // namespace serverlog::program
