#include "input/syslog_escapes.h"

namespace serverlog::program {

namespace {

// The character that an escape of rsyslog at the start of `text` stands for, -1 if there is none.
// Only control characters are escaped, so "#123" is what somebody typed.
int EscapedCharacter(std::string_view text) {
    if (text.size() < 4 || text[0] != '#') {
        return -1;
    }
    int value = 0;
    for (const char digit : text.substr(1, 3)) {
        if (digit < '0' || digit > '7') {
            return -1;
        }
        value = value * 8 + (digit - '0');
    }
    return value < 0x20 || value == 0x7f ? value : -1;
}

}  // namespace

std::string DecodeSyslogEscapes(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const int character = EscapedCharacter(text);
        result += character < 0 ? text[0] : static_cast<char>(character);
        text.remove_prefix(character < 0 ? 1 : 4);
    }
    return result;
}

}  // namespace serverlog::program
