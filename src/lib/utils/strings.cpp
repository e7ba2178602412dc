#include "utils/strings.h"

#include <mailserver/convert_to_utf8.h>
#include <mlibc/unicode.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iomanip>
#include <iterator>
#include <memory>
#include <new>

namespace serverlog::utils {

namespace {

// The functions of <cctype> take the values of unsigned char only.
bool IsSpace(char character) {
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

char LowerByte(char character) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
}

char UpperByte(char character) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
}

}  // namespace

std::vector<std::string> Split(const std::string& s, char separator) {
    std::vector<std::string> pieces;
    std::istringstream stream(s);
    for (std::string piece; std::getline(stream, piece, separator);) {
        pieces.push_back(piece);
    }
    return pieces;
}

std::vector<std::string> Split(const std::string& s, const std::string& separator) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    while (begin < s.size()) {
        const std::size_t end = std::min(s.find(separator, begin), s.size());
        if (end > begin) {
            pieces.push_back(s.substr(begin, end - begin));
        }
        begin = end + separator.size();
    }
    return pieces;
}

std::string Trim(const std::string& s) {
    const auto begin = std::find_if_not(s.begin(), s.end(), IsSpace);
    const auto end =
        std::find_if_not(s.rbegin(), std::make_reverse_iterator(begin), IsSpace).base();
    return std::string(begin, end);
}

std::string Quote(const std::string& s) {
    std::ostringstream stream;
    stream << std::quoted(s);
    return stream.str();
}

std::string Unquote(const std::string& s) {
    if (s.empty() || s.front() != '"' || s.back() != '"') {
        return s;
    }
    std::istringstream stream(s);
    std::string text;
    stream >> std::quoted(text);
    return text;
}

std::string Replace(const std::string& s, const std::string& from, const std::string& to) {
    std::string result = s;
    std::size_t position = 0;
    while ((position = result.find(from, position)) != std::string::npos) {
        result.replace(position, from.size(), to);
        position += to.size();
    }
    return result;
}

std::string ToLower(const std::string& s) {
    std::string result = s;
    std::transform(s.begin(), s.end(), result.begin(), LowerByte);
    return result;
}

std::string ToUpper(const std::string& s) {
    std::string result = s;
    std::transform(s.begin(), s.end(), result.begin(), UpperByte);
    return result;
}

std::string UTF8StrUpper(const std::string& s) {
    if (s.empty()) {
        return s;
    }
    const std::size_t size = 2 * s.size();
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[size]());
    if (!buffer ||
        MLIBCUnicodeUTF8StrUpper(s.c_str(), buffer.get(), static_cast<int>(size)) == -1) {
        return s;
    }
    return buffer.get();
}

bool Startswith(const std::string& s, const std::string& prefix) {
    return s.compare(0, prefix.size(), prefix) == 0;
}

bool Endswith(const std::string& s, const std::string& tail) {
    return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

std::string RemoveTail(std::string s, const std::string& tail) {
    const std::size_t position = s.rfind(tail);
    if (position != std::string::npos) {
        s.erase(position);
    }
    return s;
}

std::string AddressToUtf8(const std::string& address) {
    std::string converted;
    if (MERO::POSTCUBE_SERVER::ConvertToUTF8(address, converted) != 0) {
        return address;
    }
    return converted;
}

namespace {

// SizeToKb for 0 to below 10,000 KB, which most mails have: a sixth of the time. Beyond, a tie of
// the rounding may reach the digit that is kept, and the number its exponent.
constexpr int kSmallSizes = 10'000 * 1024;

std::string SmallSizeToKb(int bytes) {
    int whole = bytes / 1024;
    // Six digits in all.
    const int scale = whole < 10 ? 100'000 : whole < 100 ? 10'000 : whole < 1'000 ? 1'000 : 100;
    int behind_point = (bytes % 1024 * scale + 512) / 1024;
    if (behind_point == scale) {
        ++whole;
        behind_point = 0;
    }
    char text[10];
    char* end = std::to_chars(text, text + sizeof text, whole).ptr;
    if (behind_point > 0) {
        *end++ = '.';
        *end++ = static_cast<char>('0' + behind_point / (scale / 10));
    }
    *end++ = 'K';
    *end++ = 'B';
    return {text, end};
}

}  // namespace

std::string SizeToKb(int bytes) {
    if (bytes >= 0 && bytes < kSmallSizes) {
        return SmallSizeToKb(bytes);
    }
    const float kilobytes = static_cast<float>(bytes) * 0.0009765625F;
    // As a stream writes it, without making one: exports do this for every row.
    constexpr int kStreamPrecision = 6;
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, static_cast<double>(kilobytes),
                                   std::chars_format::general, kStreamPrecision)
                         .ptr;
    char* const point = std::find(text, end, '.');
    return std::string(text, std::min(end, point + 2)) + "KB";
}

}  // namespace serverlog::utils
