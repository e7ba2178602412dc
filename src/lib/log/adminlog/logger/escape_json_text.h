#pragma once

#include <string>

namespace serverlog::log::adminlog {

/// Escapes a text for the admin log line: the backslash and the double quote, with a backslash
/// each. Nothing else on purpose; line feeds and control characters pass as they are.
std::string EscapeJsonText(std::string const& text);

}  // namespace serverlog::log::adminlog
