#include "collect/admin_log_line.h"

#include <json/json.h>
#include <mailserver-log/log/adminlog/logger/line.h>

#include <algorithm>
#include <optional>

#include "input/input.h"
#include "input/line_reader.h"
#include "input/object_scanner.h"
#include "input/syslog_escapes.h"

namespace serverlog::program {

namespace {

namespace line = log::adminlog::line;

constexpr std::size_t kNone = std::string_view::npos;

bool EndsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// "1 TIMESTAMP HOST PROGRAM PROCESS MESSAGE " and then structured data, "-" or "[...]".
bool IsRfc5424Header(std::string_view text) {
    for (int field = 0; field < 6; ++field) {
        const std::size_t blank = text.find(' ');
        if (blank == kNone) {
            return false;
        }
        text.remove_prefix(blank + 1);
    }
    return text == "- " ||
           (text.substr(0, 1) == "[" && EndsWith(text, "] ") && text.find("] ") == text.size() - 2);
}

// "A" stands for a capital, "a" for a small letter, "d" for a digit or a blank before one.
bool Matches(std::string_view text, std::string_view pattern) {
    const auto fits = [](char wanted, char c) {
        switch (wanted) {
            case 'A':
                return c >= 'A' && c <= 'Z';
            case 'a':
                return c >= 'a' && c <= 'z';
            case 'd':
                return (c >= '0' && c <= '9') || c == ' ';
            default:
                return c == wanted;
        }
    };
    return text.size() >= pattern.size() &&
           std::equal(pattern.begin(), pattern.end(), text.begin(), fits);
}

Json::Value ParsePart(std::string_view text, const std::string& what) {
    // What exactly is wrong may quote the text, and stays out of the reason: that goes to terminals
    // and between the tabs of the log of rejected lines.
    std::string error;
    std::optional<Json::Value> value = ParseJson(text, error);
    if (!value) {
        throw LineError(what + " is no JSON that can be read");
    }
    return *std::move(value);
}

const Json::Value& Member(const Json::Value& object, std::string_view name) {
    const Json::Value* member = object.find(name.data(), name.data() + name.size());
    if (member == nullptr) {
        throw LineError(std::string(name) + " is missing");
    }
    return *member;
}

std::string Text(const Json::Value& object, std::string_view name) {
    const Json::Value& member = Member(object, name);
    if (!member.isString()) {
        throw LineError(std::string(name) + " is no text");
    }
    return member.asString();
}

// Json::Value takes 1.0 for an integer; the writer never writes that.
bool IsInteger(const Json::Value& value) {
    return value.type() == Json::intValue || value.type() == Json::uintValue;
}

std::uint64_t Unsigned(const Json::Value& object, std::string_view name) {
    const Json::Value& member = Member(object, name);
    if (!IsInteger(member) || !member.isUInt64()) {
        throw LineError(std::string(name) + " is no unsigned number");
    }
    return member.asUInt64();
}

std::int32_t Signed32(const Json::Value& object, std::string_view name) {
    const Json::Value& member = Member(object, name);
    if (!IsInteger(member) || !member.isInt()) {
        throw LineError(std::string(name) + " is no number of 32 bits");
    }
    return member.asInt();
}

// The writer of the parameters escapes control characters by itself and puts one line feed behind
// the document. So an escape of the system log can only stand at the end, and "#012" within is what
// somebody typed; unless the text is no JSON that way.
Json::Value Parameters(const std::string& text, bool escaped) {
    const std::string what(line::kWebapiParam);
    if (!escaped) {
        return ParsePart(text, what);
    }
    constexpr std::string_view kLineFeed = "#012";
    const bool ends_escaped = EndsWith(text, kLineFeed);
    try {
        return ParsePart(text.substr(0, text.size() - (ends_escaped ? kLineFeed.size() : 0)), what);
    } catch (const LineError&) {
        return ParsePart(DecodeSyslogEscapes(text), what);
    }
}

}  // namespace

std::size_t FindRecord(std::string_view text, std::size_t from) {
    return text.find(line::kHead, from);
}

bool IsSyslogPrefix(std::string_view text) {
    const std::string priority = "<" + std::to_string(line::kPriority) + ">";
    if (text.substr(0, 1) == "<") {
        if (text.substr(0, priority.size()) != priority) {
            return false;
        }
        text.remove_prefix(priority.size());
        if (IsRfc5424Header(text)) {
            return true;
        }
    }
    const std::size_t last = text.find_last_not_of(" \t");
    // A colon ends the program's name and with it the prefix; a second one would be of a message.
    return last == kNone || (text[last] == ':' && text.substr(0, last).find(": ") == kNone);
}

bool StartsWithSyslogTime(std::string_view text) {
    if (text.substr(0, 1) == "<") {
        const std::size_t end = text.find_first_not_of("0123456789", 1);
        return end > 1 && end != kNone && text[end] == '>';
    }
    return Matches(text, "Aaa dd dd:dd:dd ") || Matches(text, "dddd-dd-ddTdd:dd:dd");
}

record::AdminLog ReadAdminLogLine(std::string_view message) {
    const std::size_t begin = FindRecord(message);
    if (begin == kNone) {
        throw LineError("it holds no record");
    }
    if (!IsSyslogPrefix(message.substr(0, begin))) {
        throw LineError(
            "what stands before the record is no prefix of the system log, or one of "
            "another priority");
    }
    const std::string_view tail = message.substr(begin);
    const std::size_t length = ObjectScanner().Scan(tail);
    if (length == ObjectScanner::kOpen && message.size() > LineReader::kLongestLine) {
        throw LineError("the record is longer than " + std::to_string(LineReader::kLongestLine) +
                        " bytes");
    }
    if (length == ObjectScanner::kOpen || FindRecord(tail.substr(0, length), 1) != kNone) {
        throw LineError("the record is cut short");
    }
    const std::string_view text = tail.substr(0, length);
    // Escaping leaves no line feed behind, and every record ends its parameters with one.
    const bool escaped = text.find('\n') == kNone;
    const Json::Value object = ParsePart(text, "the record");
    const auto decoded = [&object, escaped](std::string_view name) {
        const std::string value = Text(object, name);
        return escaped ? DecodeSyslogEscapes(value) : value;
    };
    record::AdminLog record;
    record.tab_type = Signed32(object, line::kTabType);
    record.statement = decoded(line::kStatement);
    record.user = decoded(line::kUser);
    record.uid = Unsigned(object, line::kUid);
    record.date = Unsigned(object, line::kExecTime);
    record.ip = decoded(line::kIp);
    record.server = decoded(line::kServer);
    record.webapi_param = Parameters(Text(object, line::kWebapiParam), escaped);
    return record;
}

}  // namespace serverlog::program
