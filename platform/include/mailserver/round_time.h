#pragma once

/// Length of a period by its nominal number of seconds. A day that the clocks change on, and a
/// month, last longer or shorter than that.
enum class CountInterval : int { Hour = 3600, Day = 86400, Week = 604800, Month = 2592000 };

/// The start of the period that a time lies in, by the calendar of the process's time zone.
///
/// Days, weeks and months begin with the first moment of their first day, also where the clocks
/// skip or repeat midnight; weeks begin on Monday. Of an hour that the clocks repeat, each pass is
/// an hour of its own.
///
/// @param time      seconds since the epoch, within the years that localtime_r(3) knows
/// @param interval  length of the period
/// @return seconds since the epoch, at most `time`
///
/// Safe to call from several threads at once.
long getRoundTime(long time, CountInterval interval);

/// The start of the calendar month after the one that `time` lies in; see getRoundTime.
long getNextMonthStartTime(long time);
