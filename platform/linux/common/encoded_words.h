#pragma once

#include <string>

namespace platform {

/// Replaces the encoded words of a header text by what they stand for (RFC 2047:
/// "=?charset?B?...?=" and "=?charset?Q?...?="); blanks between two of them go. What only looks
/// like one stays.
///
/// @param text     text in UTF-8
/// @param decoded  receives the text in UTF-8
/// @return false when a word's charset is unknown, when its bytes are none of that charset or its
///         encoding is broken, or when it hides control characters; `decoded` is then untouched
bool DecodeEncodedWords(const std::string& text, std::string& decoded);

}  // namespace platform
