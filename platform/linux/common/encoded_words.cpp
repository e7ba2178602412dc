#include "common/encoded_words.h"

#include <algorithm>
#include <cstring>

#include "common/charset.h"

namespace platform {

namespace {

struct EncodedWord {
    std::string charset;
    char encoding = '\0';  // b, B, q or Q
    std::string text;
    std::size_t end = 0;  // place behind the word
};

// Reads the word that begins at `start`, where "=?" stands.
bool ParseWord(const std::string& text, std::size_t start, EncodedWord& word) {
    const std::size_t charset_end = text.find('?', start + 2);
    if (charset_end == std::string::npos || text.size() < charset_end + 3 ||
        text[charset_end + 2] != '?') {
        return false;
    }
    const std::size_t begin = charset_end + 3;
    const std::size_t end = text.find('?', begin);
    if (end == std::string::npos || text.size() < end + 2 || text[end + 1] != '=') {
        return false;
    }
    word.charset = text.substr(start + 2, charset_end - start - 2);
    word.charset.erase(std::min(word.charset.find('*'), word.charset.size()));  // RFC 2231 language
    word.encoding = text[charset_end + 1];
    word.text = text.substr(begin, end - begin);
    word.end = end + 2;
    return std::strchr("bBqQ", word.encoding) != nullptr && !word.charset.empty() &&
           word.text.find_first_of(" \t\r\n") == std::string::npos;
}

int DigitValue(const char* digits, char digit) {
    const char* found = digit == '\0' ? nullptr : std::strchr(digits, digit);
    return found == nullptr ? -1 : static_cast<int>(found - digits);
}

// RFC 4648; the padding may be missing.
bool DecodeBase64(const std::string& text, std::string& bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t size = std::min(text.find('='), text.size());
    if (text.find_first_not_of('=', size) != std::string::npos || size % 4 == 1) {
        return false;
    }
    unsigned bits = 0;
    int bit_count = 0;
    for (std::size_t index = 0; index < size; ++index) {
        const int value = DigitValue(kDigits, text[index]);
        if (value < 0) {
            return false;
        }
        bits = (bits << 6 | static_cast<unsigned>(value)) & 0xFFFF;
        bit_count += 6;
        if (bit_count >= 8) {
            bit_count -= 8;
            bytes += static_cast<char>(bits >> bit_count & 0xFF);
        }
    }
    return true;
}

// The "Q" encoding of RFC 2047, section 4.2.
bool DecodeQ(const std::string& text, std::string& bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF0123456789abcdef";
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '=') {
            bytes += text[index] == '_' ? ' ' : text[index];
            continue;
        }
        if (index + 2 >= text.size()) {
            return false;
        }
        const int high = DigitValue(kDigits, text[index + 1]);
        const int low = DigitValue(kDigits, text[index + 2]);
        if (high < 0 || low < 0) {
            return false;
        }
        bytes += static_cast<char>(high % 16 * 16 + low % 16);
        index += 2;
    }
    return true;
}

bool IsControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

bool DecodeWord(const EncodedWord& word, std::string& decoded) {
    const bool is_base64 = word.encoding == 'B' || word.encoding == 'b';
    std::string bytes;
    std::string text;
    if (!(is_base64 ? DecodeBase64(word.text, bytes) : DecodeQ(word.text, bytes)) ||
        !CharsetToUtf8(word.charset, bytes, text) ||
        std::any_of(text.begin(), text.end(), IsControl)) {
        return false;
    }
    decoded += text;
    return true;
}

}  // namespace

bool DecodeEncodedWords(const std::string& text, std::string& decoded) {
    std::string result;
    std::size_t place = 0;
    bool behind_word = false;
    for (std::size_t start = text.find("=?"); start != std::string::npos;
         start = text.find("=?", place)) {
        const std::string between = text.substr(place, start - place);
        EncodedWord word;
        if (!ParseWord(text, start, word)) {
            result += between + "=?";
            place = start + 2;
            behind_word = false;
            continue;
        }
        if (!behind_word || between.find_first_not_of(" \t\r\n") != std::string::npos) {
            result += between;
        }
        if (!DecodeWord(word, result)) {
            return false;
        }
        place = word.end;
        behind_word = true;
    }
    decoded = result + text.substr(place);
    return true;
}

}  // namespace platform
