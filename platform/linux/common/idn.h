#pragma once

#include <string>

namespace platform {

/// Checks that a text is a valid domain (RFC 5890; its ASCII form of letters, digits and hyphens
/// as RFC 1123 has it, without a dot at its end) and gives its one form for comparing and showing.
///
/// @param domain     the text in UTF-8 or punycode
/// @param canonical  receives the domain in lower case and in Unicode
/// @return false when it is none; `canonical` is then untouched
bool CanonicalDomain(const std::string& domain, std::string& canonical);

}  // namespace platform
