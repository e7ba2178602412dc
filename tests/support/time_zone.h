#pragma once

#include <stdlib.h>
#include <time.h>

#include <ctime>
#include <stdexcept>
#include <string>

namespace test {

/// Sets the time zone of the process.
inline void SetZone(const std::string& name) {
    setenv("TZ", name.c_str(), 1);
    tzset();
}

/// Seconds since the epoch of "2024-03-31 01:30:00" in the time zone of the process; of an hour
/// that the clocks repeat, the first pass.
inline long LocalTime(const std::string& text) {
    std::tm fields = {};
    const char* end = strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &fields);
    if (end == nullptr || *end != '\0') {
        throw std::invalid_argument(text);
    }
    fields.tm_isdst = -1;
    return std::mktime(&fields);
}

}  // namespace test
