#pragma once

#include <array>
#include <ctime>

namespace serverlog::program {

/// On which days of the week, and when on these, the logs are archived, by the local time.
struct ArchiveSchedule {
    std::array<bool, 7> days = {};  ///< from Sunday
    int hour = 0;
    int minute = 0;
};

/// Reads the settings `archive_weekday`, `archive_hour` and `archive_minute`: every day at 4:00
/// unless they tell otherwise. Throws Failure when they cannot be read or make no sense.
ArchiveSchedule ReadArchiveSchedule();

/// The latest time at or before `now`, within a week, that the schedule names.
///
/// @param now  seconds since the epoch
/// @return 0 if no day of the week is named
std::time_t LatestArchiveTime(const ArchiveSchedule& schedule, std::time_t now);

}  // namespace serverlog::program
