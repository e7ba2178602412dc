#pragma once

#include <ctime>
#include <string>

/// Text forms of points in time. Both functions go by the process's time zone, keep no state and
/// may run in several threads at once. They are no inverses of each other, on purpose.
namespace serverlog::utils {

/// The text of a time in a year that is beyond the calendar: strftime(3) of nothing but zeros.
inline constexpr char kNoCalendarTime[] = "1900-01-00 00:00:00";

/// A point in time as local time, such as "2026-11-22 10:00:00"; kNoCalendarTime for one that has
/// none.
///
/// @param time  seconds since the epoch
std::string ConvertToTimeString(long time);

/// The start of a local day in seconds since the epoch.
///
/// @param date  such as "2026/11/22"; anything behind the day is ignored
/// @return      what mktime(3) makes of the fields that could be read where `date` has another
///              form; there is no error. The day's start is counted without daylight saving: in
///              summer it is the point at which a clock without it shows midnight.
std::time_t ConvertTimeStringToTime(const std::string& date);

}  // namespace serverlog::utils
