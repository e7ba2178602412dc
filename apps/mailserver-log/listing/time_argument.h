#pragma once

#include <ctime>
#include <string>

namespace serverlog::program {

/// The seconds that a time on the command line stands for, both ends included.
struct TimeSpan {
    std::time_t first;
    std::time_t last;
};

/// Reads a time: a day ("2026-11-22"), a minute ("2026-11-22 10:00"), a second
/// ("2026-11-22 10:00:00", also with a T between), all local, or a time back from `now` in seconds,
/// minutes, hours, days or weeks ("90s", "10m", "2h", "3d", "1w").
///
/// Throws std::invalid_argument, whose text is fit for a person, for anything else.
TimeSpan ParseTime(const std::string& text, std::time_t now);

}  // namespace serverlog::program
