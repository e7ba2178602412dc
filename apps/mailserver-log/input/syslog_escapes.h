#pragma once

#include <string>
#include <string_view>

namespace serverlog::program {

/// Turns the escapes that rsyslog writes for control characters on receiving, "#ooo" with three
/// octal digits, back. Any other "#" stays.
std::string DecodeSyslogEscapes(std::string_view text);

}  // namespace serverlog::program
