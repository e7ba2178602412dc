#pragma once

#include <string>
#include <string_view>

/// Texts of log lines as the stores hold them: valid UTF-8 without NUL. Whatever else is in them
/// is data, and stays.
namespace serverlog::program {

/// What is no UTF-8 becomes U+FFFD.
std::string RowText(std::string_view text);

/// An address, its domain in Unicode form (RFC 5891) where it can be.
std::string RowAddress(std::string_view address);

/// A header's text with its encoded words (RFC 2047) decoded and its folds (RFC 5322, 2.2.3)
/// undone. Stays as it is where it can't be decoded.
std::string RowHeader(std::string_view text);

}  // namespace serverlog::program
