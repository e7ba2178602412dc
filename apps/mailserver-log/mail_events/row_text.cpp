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

// The head of the encoded word whose text starts at `begin`, "=?charset?encoding?" in small
// letters; empty if none is there.
std::string HeadOfWord(const std::string& text, std::size_t begin) {
    constexpr std::size_t kEncoding = 3;  // "?b?"
    if (begin < kEncoding + 2 || text[begin - kEncoding] != '?') {
        return {};
    }
    const std::size_t start = text.rfind("=?", begin - kEncoding - 1);
    std::string head = start == std::string::npos ? "" : text.substr(start, begin - start);
    std::transform(head.begin(), head.end(), head.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return head;
}

// Makes one of two encoded words that stand side by side and are written in the same way. Many
// programs cut a text anywhere, and a character that is cut can't be decoded.
void JoinWords(std::string& text) {
    constexpr std::string_view kBetween = "?= =?";
    for (std::size_t at = 0; (at = text.find(kBetween, at)) != std::string::npos;) {
        const std::size_t begin = text.rfind('?', at - 1) + 1;
        const std::string head = HeadOfWord(text, begin);
        const std::size_t next = at + kBetween.size() - 2 + head.size();
        const bool is_same = !head.empty() && next <= text.size() && HeadOfWord(text, next) == head;
        const bool is_whole =
            head.find("?q?") != std::string::npos || ((at - begin) % 4 == 0 && text[at - 1] != '=');
        if (is_same && is_whole) {
            text.erase(at, next - at);
        } else {
            at += kBetween.size();
        }
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
    JoinWords(unfolded);
    const bool is_plain = unfolded.find("=?") == std::string::npos && IsAscii(unfolded);
    return is_plain ? unfolded : Converted(unfolded);
}

}  // namespace serverlog::program
