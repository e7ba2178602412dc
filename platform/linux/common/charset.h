#pragma once

#include <string>

namespace platform {

/// Whether a text is valid UTF-8.
bool IsUtf8(const std::string& text);

/// Converts a text to UTF-8.
///
/// @param charset  name of its encoding, as the registry of IANA or ICU has it
/// @param bytes    the text
/// @param utf8     receives the result
/// @return false when the encoding is unknown or the bytes are none of it; `utf8` is then untouched
bool CharsetToUtf8(const std::string& charset, const std::string& bytes, std::string& utf8);

}  // namespace platform
