#include "mail_events/row_text.h"

#include <mailserver/convert_to_utf8.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace serverlog::program {

namespace {

constexpr std::string_view kReplacement = "\xef\xbf\xbd";

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c != '\0' && static_cast<unsigned char>(c) < 0x80; });
}

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

std::string Converted(std::string_view text) {
    std::string result(text);
    // Untouched where it can't.
    MERO::POSTCUBE_SERVER::ConvertToUTF8(result, result);
    return RowText(result);
}

}  // namespace

std::string RowText(std::string_view text) {
    if (IsAscii(text)) {
        return std::string(text);
    }
    std::string result;
    result.reserve(text.size());
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int64_t>(text.size());
    for (std::int64_t i = 0; i < size;) {
        const std::int64_t start = i;
        UChar32 character = 0;
        U8_NEXT(bytes, i, size, character);
        result += character <= 0 ? kReplacement
                                 : text.substr(static_cast<std::size_t>(start),
                                               static_cast<std::size_t>(i - start));
    }
    return result;
}

std::string RowAddress(std::string_view address) {
    // Converting would take time, and other things in a local part for encoded.
    const bool has_punycode =
        address.find("xn--") != std::string_view::npos || address.find("XN--") != std::string::npos;
    return has_punycode ? Converted(address) : RowText(address);
}

std::string RowHeader(std::string_view text) {
    std::string unfolded(text);
    ReplaceAll(unfolded, "\r\n", "\n");
    ReplaceAll(unfolded, "\n ", " ");
    ReplaceAll(unfolded, "\n\t", " ");
    // Postfix writes a question mark for the line break of a fold. Between two encoded words it can
    // be nothing else.
    ReplaceAll(unfolded, "?=? =?", "?= =?");
    ReplaceAll(unfolded, "?=?\t=?", "?= =?");
    const bool is_plain = unfolded.find("=?") == std::string::npos && IsAscii(unfolded);
    return is_plain ? unfolded : Converted(unfolded);
}

}  // namespace serverlog::program
