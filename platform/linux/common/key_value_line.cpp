#include "common/key_value_line.h"

#include <iomanip>
#include <sstream>

namespace platform {

namespace {

std::string WithoutBlanks(const std::string& text) {
    constexpr char kBlanks[] = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) {
        return "";
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes a quoted text that fills all of `text`.
bool ParseQuoted(const std::string& text, std::string& value) {
    if (text.empty() || text.front() != '"') {
        return false;  // std::quoted would read a bare word
    }
    std::istringstream stream(text);
    return (stream >> std::quoted(value)) &&
           stream.peek() == std::istringstream::traits_type::eof();
}

}  // namespace

KeyValueLine ParseKeyValueLine(const std::string& line) {
    const std::string text = WithoutBlanks(line);
    if (text.empty() || text.front() == '#') {
        return {};
    }
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos) {
        return {KeyValueLine::Kind::Other, text, ""};
    }
    const std::string key = WithoutBlanks(text.substr(0, sign));
    std::string value;
    if (key.empty() || !ParseQuoted(WithoutBlanks(text.substr(sign + 1)), value)) {
        return {KeyValueLine::Kind::Other, text, ""};
    }
    return {KeyValueLine::Kind::KeyValue, key, value};
}

std::string FormatKeyValueLine(const std::string& key, const std::string& value) {
    std::ostringstream stream;
    stream << key << '=' << std::quoted(value);
    return stream.str();
}

}  // namespace platform
