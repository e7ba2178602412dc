#pragma once

#include <string>

namespace MERO::POSTCUBE_SERVER {

/// Converts a mail address, or a text that holds addresses, to UTF-8 for reading:
///
/// 1. Bytes that are no valid UTF-8 are read in the encoding that they most likely have.
/// 2. Encoded words (RFC 2047: "=?charset?B?...?=") become their text.
/// 3. Domains in punycode form (RFC 3492: "xn--...") behind an "@", or as the whole text, become
///    their Unicode form (RFC 5891).
///
/// A text that needs none of this comes out as it is.
///
/// @param in   text of any bytes
/// @param out  receives the text in UTF-8; may be the same object as `in`
/// @return 0; -1 when an encoded word or a punycode domain cannot be decoded, or an encoded word
///         hides control characters. `out` is then untouched.
///
/// Safe to call from several threads at once.
int ConvertToUTF8(const std::string& in, std::string& out);

}  // namespace MERO::POSTCUBE_SERVER
