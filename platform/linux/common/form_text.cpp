#include "common/form_text.h"

#include <algorithm>
#include <charconv>

namespace platform {

namespace {

// The byte of two hexadecimal digits; false where they are none.
bool ReadByte(const std::string& text, std::size_t place, char& byte) {
    if (text.size() < place + 2) {
        return false;
    }
    unsigned char number = 0;
    const char* const end = text.data() + place + 2;
    // Takes no sign, since the number has none.
    if (std::from_chars(text.data() + place, end, number, 16).ptr != end) {
        return false;
    }
    byte = static_cast<char>(number);
    return true;
}

std::string Decoded(const std::string& text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char character = text[i] == '+' ? ' ' : text[i];
        if (character == '%' && ReadByte(text, i + 1, character)) {
            i += 2;
        }
        decoded += character;
    }
    return decoded;
}

}  // namespace

void ReadFormText(const std::string& text, std::map<std::string, std::string>& fields) {
    std::size_t end = 0;
    for (std::size_t begin = 0; begin < text.size(); begin = end + 1) {
        end = std::min(text.find('&', begin), text.size());
        const std::string piece = text.substr(begin, end - begin);
        const std::size_t name_end = std::min(piece.find('='), piece.size());
        if (!piece.empty()) {
            fields[Decoded(piece.substr(0, name_end))] =
                Decoded(piece.substr(std::min(name_end + 1, piece.size())));
        }
    }
}

}  // namespace platform
