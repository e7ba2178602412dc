#include "output/display_text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <cstdio>

namespace serverlog::program {

namespace {

constexpr UChar32 kZeroWidthNonJoiner = 0x200c;
constexpr UChar32 kZeroWidthJoiner = 0x200d;
constexpr std::string_view kReplacement = "\xef\xbf\xbd";
constexpr char kEllipsis[] = "\xe2\x80\xa6";

// The character at the start of `text`, negative if there is none, and its length in bytes.
struct Character {
    UChar32 code;
    std::size_t length;
};

Character FirstCharacter(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int64_t>(text.size());
    std::int64_t length = 0;
    UChar32 code = 0;
    U8_NEXT(bytes, length, size, code);
    return {code, static_cast<std::size_t>(length)};
}

bool HasToBeSpelt(UChar32 code) {
    if (code == kZeroWidthJoiner || code == kZeroWidthNonJoiner) {
        return false;  // letters of some scripts, and some emoji, need them
    }
    return (U_GET_GC_MASK(code) & (U_GC_CC_MASK | U_GC_CF_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK)) != 0;
}

std::string Spelt(UChar32 code) {
    switch (code) {
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            break;
    }
    const char* format = code < 0x80 ? "\\x%02x" : code < 0x10000 ? "\\u%04x" : "\\U%08x";
    char text[16];
    std::snprintf(text, sizeof text, format, static_cast<unsigned>(code));
    return text;
}

std::size_t Width(UChar32 code) {
    constexpr std::uint32_t kNoWidth = U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK;
    if ((U_GET_GC_MASK(code) & kNoWidth) != 0) {
        return 0;
    }
    const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace

std::string VisibleText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Character first = FirstCharacter(text);
        if (first.code < 0) {
            result += kReplacement;
        } else if (HasToBeSpelt(first.code)) {
            result += Spelt(first.code);
        } else {
            result += text.substr(0, first.length);
        }
        text.remove_prefix(first.length);
    }
    return result;
}

std::string ValidUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Character first = FirstCharacter(text);
        result += first.code < 0 ? kReplacement : text.substr(0, first.length);
        text.remove_prefix(first.length);
    }
    return result;
}

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const Character first = FirstCharacter(text);
        width += Width(first.code);
        text.remove_prefix(first.length);
    }
    return width;
}

std::string CutToWidth(std::string_view text, std::size_t width) {
    if (DisplayWidth(text) <= width) {
        return std::string(text);
    }
    std::string result;
    std::size_t used = 1;  // the ellipsis
    for (std::string_view rest = text; !rest.empty();) {
        const Character first = FirstCharacter(rest);
        used += Width(first.code);
        if (used > width) {
            break;
        }
        result += rest.substr(0, first.length);
        rest.remove_prefix(first.length);
    }
    return width == 0 ? std::string() : result + kEllipsis;
}

}  // namespace serverlog::program
