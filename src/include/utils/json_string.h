#pragma once

#include <mailserver-log/export.h>

#include <string>
#include <string_view>

namespace serverlog::utils {

/// Adds a text as a JSON string (RFC 8259) with its quotes to `out`. Characters stay in UTF-8,
/// control characters become escapes, and bytes that are no UTF-8 become U+FFFD.
MAILSERVER_LOG_EXPORT void AppendJsonString(std::string& out, std::string_view text);

}  // namespace serverlog::utils
