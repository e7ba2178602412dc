#pragma once

#include <mailserver/maillog.h>

#include <cstdio>

namespace serverlog::utils {

/// Longest format of an error line with its terminating NUL, in bytes; what is longer is cut.
inline constexpr unsigned kErrorLineSize = 2048;

/// The one severity at which the library writes error lines: LOG_ERR of syslog(3).
inline constexpr int kErrorLevel = 3;

/// Writes one error line to the mail log: "<file>:<line> <text>".
///
/// The location and the caller's format are joined first, and the result is the format that the
/// arguments are put into; so a cut hits the format and never an argument.
///
/// @param file    the source's path; a literal, so it holds no '%'
/// @param line    the source's line
/// @param format  printf format of the text; a '%' of foreign origin belongs into an argument
///
/// Never fails. Safe to call from several threads at once. Use SERVERLOG_ERROR_LINE, which also has
/// the compiler check the arguments against the format.
template <class... Arguments>
void WriteErrorLine(const char* file, int line, const char* format, Arguments... arguments) {
    char buffer[kErrorLineSize] = {};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wformat-truncation"
#endif
    std::snprintf(buffer, sizeof buffer, "%s:%d %s", file, line, format);
    maillog(kErrorLevel, buffer, arguments...);
#pragma GCC diagnostic pop
}

}  // namespace serverlog::utils

/// WriteErrorLine from the place where it stands.
#define SERVERLOG_ERROR_LINE(...)                                       \
    (static_cast<void>(sizeof(std::snprintf(nullptr, 0, __VA_ARGS__))), \
     ::serverlog::utils::WriteErrorLine(__FILE__, __LINE__, __VA_ARGS__))
