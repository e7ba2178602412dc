#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/utils/byte_block.h>
#include <mailserver-log/utils/text_buffer.h>

#include <string_view>

namespace serverlog::utils {

namespace internal {

/// Adds a text with what it needs of escapes, without quotes.
MAILSERVER_LOG_EXPORT void AppendJsonEscaped(TextBuffer& out, std::string_view text);

}  // namespace internal

/// Adds a text as a JSON string (RFC 8259) to `out`, but for its quotes, so that they can be added
/// together with what stands around them. Characters stay in UTF-8, control characters become
/// escapes, and bytes that are no UTF-8 become U+FFFD.
inline void AppendJsonCharacters(TextBuffer& out, std::string_view text) {
    const bool plain = !HasMarked(text, [](const ByteBlock& bytes) {
        return bytes.BelowOrBeyond(' ') | bytes.Equal('"') | bytes.Equal('\\');
    });
    if (plain) {
        out.Append(text);
    } else {
        internal::AppendJsonEscaped(out, text);
    }
}

/// The same with its quotes.
inline void AppendJsonString(TextBuffer& out, std::string_view text) {
    out.Append('"');
    AppendJsonCharacters(out, text);
    out.Append('"');
}

}  // namespace serverlog::utils
