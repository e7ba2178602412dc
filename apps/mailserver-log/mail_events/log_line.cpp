#include "mail_events/log_line.h"

#include "input/syslog_escapes.h"

namespace serverlog::program {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kRfc5424Version = "1 ";
constexpr std::string_view kNilValue = "-";

// "<N>" at the start, which tells nothing that is needed here.
void SkipPriority(std::string_view& line) {
    if (line.substr(0, 1) != "<") {
        return;
    }
    const std::size_t end = line.find_first_not_of("0123456789", 1);
    if (end > 1 && end != kNone && line[end] == '>') {
        line.remove_prefix(end + 1);
    }
}

std::string_view TakeWord(std::string_view& line) {
    const std::size_t end = line.find(' ');
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(end == kNone ? line.size() : end + 1);
    return word;
}

// RFC 5424, 6.3: "-", or elements in square brackets, whose values in quotes may hold brackets.
bool SkipStructuredData(std::string_view& line) {
    if (line.substr(0, 1) == kNilValue) {
        line.remove_prefix(1);
        return true;
    }
    while (line.substr(0, 1) == "[") {
        bool in_quotes = false;
        std::size_t i = 1;
        for (; i < line.size() && (in_quotes || line[i] != ']'); ++i) {
            if (in_quotes && line[i] == '\\') {
                ++i;
            } else if (line[i] == '"') {
                in_quotes = !in_quotes;
            }
        }
        if (i >= line.size()) {
            return false;
        }
        line.remove_prefix(i + 1);
    }
    return true;
}

}  // namespace

bool LogLineReader::Read(std::string_view line, LogLine& result) {
    if (line.size() > kLongestLine) {
        return false;
    }
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    result = {};
    result.host = host_;
    SkipPriority(line);
    if (line.substr(0, kRfc5424Version.size()) == kRfc5424Version) {
        return ReadRfc5424(line.substr(kRfc5424Version.size()), result);
    }
    if (!stamps_.Read(line, result.stamp) || line.substr(0, 1) != " ") {
        return false;
    }
    line.remove_prefix(1);
    const std::size_t end = line.find(' ');
    // Without a host the program follows, which ends with a colon.
    if (end != kNone && end > 0 && line[end - 1] != ':') {
        result.host = TakeWord(line);
    }
    ReadTag(line, result);
    result.text = Decoded(result.text);
    return true;
}

bool LogLineReader::ReadRfc5424(std::string_view line, LogLine& result) {
    if (!stamps_.Read(line, result.stamp) || !TakeWord(line).empty()) {
        return false;
    }
    const auto value = [&line] {
        const std::string_view word = TakeWord(line);
        return word == kNilValue ? std::string_view() : word;
    };
    const std::string_view host = value();
    result.host = host.empty() ? host_ : host;
    result.program = value();
    result.process = value();
    TakeWord(line);  // the kind of message
    if (!SkipStructuredData(line)) {
        return false;
    }
    TakeWord(line);
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    if (line.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        line.remove_prefix(kByteOrderMark.size());
    }
    result.text = Decoded(line);
    return true;
}

// "program[process]: text". Some lines of the system log's own have no program.
void LogLineReader::ReadTag(std::string_view line, LogLine& result) {
    const std::size_t end = line.find_first_of("[: ");
    result.text = line;
    if (end == kNone || end == 0 || line[end] == ' ') {
        return;
    }
    std::string_view rest = line.substr(end);
    std::string_view process;
    if (rest[0] == '[') {
        const std::size_t close = rest.find(']');
        if (close == kNone) {
            return;
        }
        process = rest.substr(1, close - 1);
        rest.remove_prefix(close + 1);
    }
    if (rest.substr(0, 1) != ":") {
        return;
    }
    rest.remove_prefix(1);
    if (rest.substr(0, 1) == " ") {
        rest.remove_prefix(1);
    }
    result.program = line.substr(0, end);
    result.process = process;
    result.text = rest;
}

std::string_view LogLineReader::Decoded(std::string_view text) {
    if (text.find('#') == kNone) {
        return text;
    }
    decoded_ = DecodeSyslogEscapes(text);
    return decoded_;
}

}  // namespace serverlog::program
