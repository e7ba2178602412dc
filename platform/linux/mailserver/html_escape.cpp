#include "mailserver/html_escape.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr const char* Entity(char character) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            return nullptr;
    }
}

// Looked up by the byte: most bytes are none of the five.
constexpr std::array<bool, 256> kEscaped = [] {
    std::array<bool, 256> escaped = {};
    for (std::size_t byte = 0; byte < escaped.size(); ++byte) {
        escaped[byte] = Entity(static_cast<char>(byte)) != nullptr;
    }
    return escaped;
}();

bool IsEscaped(char character) {
    return kEscaped[static_cast<unsigned char>(character)];
}

}  // namespace

std::string HtmlStrEscape(const std::string& text) {
    std::string escaped;
    escaped.reserve(text.size());
    // Most texts hold none of the five and are copied as they are.
    auto begin = text.begin();
    while (true) {
        const auto found = std::find_if(begin, text.end(), IsEscaped);
        escaped.append(begin, found);
        if (found == text.end()) {
            return escaped;
        }
        escaped += Entity(*found);
        begin = found + 1;
    }
}
