#pragma once

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

/// Text helpers. All of them are free of state and may run in several threads at once; none fails
/// other than by std::bad_alloc.
namespace serverlog::utils {

/// Cuts `s` at each `separator` and keeps the empty pieces between two of them. A separator at the
/// very end adds no empty last piece; an empty `s` gives no piece.
///
/// Differs on purpose from the form with a string: "a,,b" has three pieces here and two there.
std::vector<std::string> Split(const std::string& s, char separator);

/// Cuts `s` at each `separator` and drops every empty piece.
///
/// @param separator  never empty
std::vector<std::string> Split(const std::string& s, const std::string& separator);

/// `s` without the white space (isspace(3)) at both ends.
std::string Trim(const std::string& s);

/// `s` between double quotes, with a backslash before each double quote and each backslash in it.
std::string Quote(const std::string& s);

/// Undoes Quote where both the first and the last character of `s` are double quotes; any other `s`
/// comes back unchanged. Reading ends at the first double quote that has no backslash before it:
/// what stands behind it is lost.
std::string Unquote(const std::string& s);

/// The elements, as operator<< writes them, with `separator` between each two.
template <class T>
std::string Join(const std::vector<T>& elements, const std::string& separator) {
    std::ostringstream text;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i != 0) {
            text << separator;
        }
        text << elements[i];
    }
    return text.str();
}

/// `s` with every `from` replaced by `to`, left to right; what was put in is not searched again.
///
/// @param from  never empty
std::string Replace(const std::string& s, const std::string& from, const std::string& to);

/// `s` in lower case, byte by byte (tolower(3)): letters outside ASCII stay as they are.
std::string ToLower(const std::string& s);

/// `s` in upper case, byte by byte (toupper(3)): letters outside ASCII stay as they are.
std::string ToUpper(const std::string& s);

/// `s` in upper case for all of Unicode.
///
/// @param s  UTF-8 without NUL
/// @return   `s` itself where the platform can't convert it: no UTF-8, or a result that takes
///           more than double the room
std::string UTF8StrUpper(const std::string& s);

/// True when `s` begins with `prefix`; an empty `prefix` begins every text.
bool Startswith(const std::string& s, const std::string& prefix);

/// True when `s` ends with `tail`; an empty `tail` ends every text.
bool Endswith(const std::string& s, const std::string& tail);

/// Cuts `s` from the last `tail` in it to its end, also where more characters follow that `tail`.
/// A text without `tail` comes back unchanged.
std::string RemoveTail(std::string s, const std::string& tail);

/// The UTF-8 form of a mail address that is written in another encoding or in punycode; `address`
/// itself where the platform can't convert it.
std::string AddressToUtf8(const std::string& address);

/// A size for display: "1.5KB". One digit behind the point, cut off and not rounded; none for a
/// text without a point. From a million KB on the number is in exponent form, and its cut leaves
/// "1.0KB" of 1.04858e+06; readers of these texts know them so.
///
/// @param bytes  size in bytes; a negative one keeps its sign
std::string SizeToKb(int bytes);

}  // namespace serverlog::utils
