#include "mailserver/html_escape.h"

#include <algorithm>

namespace {

const char* Entity(char character) {
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

}  // namespace

std::string HtmlStrEscape(const std::string& text) {
    std::string escaped;
    escaped.reserve(text.size());
    // Most texts hold none of the five and are copied as they are.
    auto begin = text.begin();
    while (true) {
        const auto found =
            std::find_if(begin, text.end(), [](char c) { return Entity(c) != nullptr; });
        escaped.append(begin, found);
        if (found == text.end()) {
            return escaped;
        }
        escaped += Entity(*found);
        begin = found + 1;
    }
}
