#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "mail_events/stamp_reader.h"

namespace serverlog::program {

/// One line of a system log. The texts lie in the line that was read or in its reader.
struct LogLine {
    Stamp stamp;
    std::string_view host;  ///< that logged it
    std::string_view program;
    std::string_view process;  ///< its number; may be empty
    std::string_view text;     ///< without the escapes of rsyslog
};

/// Reads lines as a log file has them (RFC 3164 or RFC 3339 time, host, "program[process]: text"),
/// as a program writes them to /dev/log (with a priority and no host), and as RFC 5424 has them.
class LogLineReader {
 public:
    /// The longest line that is read, in bytes. A mail server's are shorter than 4 KiB.
    static constexpr std::size_t kLongestLine = std::size_t{1} << 16;

    /// @param host  that logged the lines that do not tell
    explicit LogLineReader(std::string host) : host_(std::move(host)) {}

    /// @param line    without its line feed
    /// @param result  valid until the next call, as long as `line` is
    /// @return false if it is none, starts with no time, or is too long
    bool Read(std::string_view line, LogLine& result);

 private:
    bool ReadRfc5424(std::string_view line, LogLine& result);
    static void ReadTag(std::string_view line, LogLine& result);
    std::string_view Decoded(std::string_view text);

    std::string host_;
    StampReader stamps_;
    std::string decoded_;
};

}  // namespace serverlog::program
