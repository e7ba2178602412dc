#pragma once

#include <mailserver-log/old_log/statistic_log.h>

#include <string>

#include "old_log/traffic_tables.h"

namespace statistic_log {

/// A span of time in seconds since the epoch.
struct Window {
    long from;
    long until;  ///< excluded
};

/// The period of a scale that a time lies in, as the statistics take it.
Window PeriodOf(const ScaleRow& scale, long time);

// The texts of the traffic statistics. `with_long_term`: "DB0" is attached and read as well.

/// Counts the events of a status.
std::string CountQuery(const StatusRow& status, const Window& window, bool with_long_term);

/// Lists the five names of a status with the most events.
std::string TopQuery(const StatusRow& status, const Window& window, bool with_long_term);

/// Rewrites the daily usage of a status on the attached "statDB".
std::string DailyUsageCommand(const StatusRow& status, const Window& day, bool with_long_term);

/// Lists the five names with the most events from the daily usage.
std::string TopOfUsageQuery(const StatusRow& status, const Window& window);

/// Saves the counts of an hour.
std::string SaveHourCommand(const ScaleRow& scale, long time, const StatisticCount& count);

/// Saves the counts of a longer period as the sum over the finer table.
std::string SumUpCommand(const ScaleRow& scale, const Window& period);

/// Saves one place of a top list.
///
/// @param rank  from 0
std::string SaveTopCommand(const ScaleRow& scale, long time, const StatusRow& status,
                           std::size_t rank, const NameCounts::value_type& entry);

/// Removes what a row of the retention says.
std::string RemoveCommand(const RetentionRow& row, long now);

}  // namespace statistic_log
