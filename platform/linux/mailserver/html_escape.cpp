#include "mailserver/html_escape.h"

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
    for (const char character : text) {
        const char* entity = Entity(character);
        if (entity == nullptr) {
            escaped += character;
        } else {
            escaped += entity;
        }
    }
    return escaped;
}
