#include <mailserver-log/utils/json_string.h>
#include <unicode/utf8.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace serverlog::utils {

namespace {

constexpr std::string_view kReplacement = "\xef\xbf\xbd";

// Whether a byte stands for itself: looked up, so that runs of such bytes are copied as a whole.
constexpr std::array<bool, 256> kPlain = [] {
    std::array<bool, 256> plain = {};
    for (std::size_t byte = 0x20; byte < 0x80; ++byte) {
        plain[byte] = byte != '"' && byte != '\\';
    }
    return plain;
}();

bool IsPlain(char c) {
    return kPlain[static_cast<unsigned char>(c)];
}

void AppendEscape(TextBuffer& out, char c) {
    constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
    constexpr std::string_view kLetters = "\"\\bfnrt";
    if (const std::size_t found = kEscaped.find(c); found != std::string_view::npos) {
        out.Append('\\');
        out.Append(kLetters[found]);
        return;
    }
    char text[8];
    std::snprintf(text, sizeof text, "\\u%04x", static_cast<unsigned>(c));
    out.Append(text);
}

// Adds the character that begins the text, which is no ASCII, and gives its length.
std::size_t AppendCharacter(TextBuffer& out, std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int64_t>(text.size());
    std::int64_t length = 0;
    UChar32 code = 0;
    U8_NEXT(bytes, length, size, code);
    const auto taken = static_cast<std::size_t>(length);
    out.Append(code < 0 ? kReplacement : text.substr(0, taken));
    return taken;
}

}  // namespace

void internal::AppendJsonEscaped(TextBuffer& out, std::string_view text) {
    while (!text.empty()) {
        std::size_t run = 0;
        while (run < text.size() && IsPlain(text[run])) {
            ++run;
        }
        out.Append(text.substr(0, run));
        text.remove_prefix(run);
        if (text.empty()) {
            break;
        }
        std::size_t taken = 1;
        if (static_cast<unsigned char>(text[0]) < 0x80) {
            AppendEscape(out, text[0]);
        } else {
            taken = AppendCharacter(out, text);
        }
        text.remove_prefix(taken);
    }
}

}  // namespace serverlog::utils
