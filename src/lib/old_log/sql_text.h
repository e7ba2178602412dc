#pragma once

#include <string>

namespace statistic_log {

/// Formats the text of a statement with sqlite3_mprintf (https://www.sqlite.org/printf.html): "%q"
/// doubles single quotes. A text of any length comes out whole, so that a long name never cuts a
/// statement to one of another meaning.
std::string SqlText(const char* format, ...);

}  // namespace statistic_log
