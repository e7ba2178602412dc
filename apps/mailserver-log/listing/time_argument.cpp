#include "listing/time_argument.h"

#include <charconv>
#include <limits>
#include <optional>
#include <stdexcept>

namespace serverlog::program {

namespace {

struct Unit {
    char letter;
    std::time_t seconds;
};

constexpr Unit kUnits[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}, {'w', 604800}};

struct Form {
    const char* format;
    int std::tm::*finest;  // what it leaves open is below this
};

constexpr Form kForms[] = {
    {"%Y-%m-%d", &std::tm::tm_mday},         {"%Y-%m-%d %H:%M", &std::tm::tm_min},
    {"%Y-%m-%dT%H:%M", &std::tm::tm_min},    {"%Y-%m-%d %H:%M:%S", &std::tm::tm_sec},
    {"%Y-%m-%dT%H:%M:%S", &std::tm::tm_sec},
};

std::optional<TimeSpan> TimeBack(const std::string& text, std::time_t now) {
    std::time_t count = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, count);
    if (error != std::errc() || rest + 1 != end || count < 0) {
        return std::nullopt;
    }
    for (const Unit& unit : kUnits) {
        if (*rest == unit.letter && count <= now / unit.seconds) {
            return TimeSpan{now - count * unit.seconds, now - count * unit.seconds};
        }
    }
    return std::nullopt;
}

std::time_t LocalTime(std::tm time) {
    time.tm_isdst = -1;
    return std::mktime(&time);
}

// strptime takes a 30th of February, which mktime would make a day in March.
bool IsOnCalendar(const std::tm& time) {
    std::tm normal = time;
    normal.tm_isdst = -1;
    std::mktime(&normal);
    return normal.tm_mday == time.tm_mday && normal.tm_mon == time.tm_mon;
}

std::optional<TimeSpan> Moment(const std::string& text, const Form& form) {
    std::tm time = {};
    const char* end = strptime(text.c_str(), form.format, &time);
    if (end == nullptr || *end != '\0' || text.size() < 10 || !IsOnCalendar(time)) {
        return std::nullopt;
    }
    std::tm next = time;
    ++(next.*form.finest);
    return TimeSpan{LocalTime(time), LocalTime(next) - 1};
}

}  // namespace

TimeSpan ParseTime(const std::string& text, std::time_t now) {
    if (const auto span = TimeBack(text, now)) {
        return *span;
    }
    for (const Form& form : kForms) {
        if (const auto span = Moment(text, form)) {
            return *span;
        }
    }
    throw std::invalid_argument(
        "\"" + text +
        "\" is no time; write 2026-11-22, \"2026-11-22 10:00:00\", or 2h or "
        "3d for a time back from now");
}

}  // namespace serverlog::program
