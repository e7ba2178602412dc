#pragma once

#include <mailserver-log/old_log/statistic_log.h>
#include <mailserver/round_time.h>

namespace statistic_log {

/// How the events of a status are counted.
struct StatusRow {
    MailStatus status;
    const char* key;  ///< column whose values the top lists name
    ListsByStatus::size_type index() const { return static_cast<std::size_t>(status); }
};

/// In the order in which statuses are always gone through.
inline constexpr StatusRow kStatuses[kStatusCount] = {
    {MailStatus::Sent, "mail_from"},  {MailStatus::Received, "mail_to"},
    {MailStatus::Bounced, "mail_to"}, {MailStatus::Resent, "mail_from"},
    {MailStatus::Rejected, "src"},
};

/// How the counts of a scale come about.
struct ScaleRow {
    TimeScale scale;
    CountInterval interval;
    const char* table;
    const char* source;  ///< the finer table that is summed up; null: counted from the logs
    ListsByStatus StatisticCount::*lists;
};

/// In the order in which they are saved: each behind the one that it sums up. Weeks and months do
/// not fit into each other, so both sum days.
inline constexpr ScaleRow kScales[] = {
    {TimeScale::Hour, CountInterval::Hour, "log_statistic_hour", nullptr, &StatisticCount::hour},
    {TimeScale::Day, CountInterval::Day, "log_statistic_day", "log_statistic_hour",
     &StatisticCount::day},
    {TimeScale::Week, CountInterval::Week, "log_statistic_week", "log_statistic_day",
     &StatisticCount::week},
    {TimeScale::Month, CountInterval::Month, "log_statistic_month", "log_statistic_day",
     &StatisticCount::month},
};

/// How long rows are kept, back from the present second and not from the start of a period.
struct RetentionRow {
    const char* table;
    TimeScale scale;  ///< of the rows; looked at in kTopTable only
    long seconds;
};

inline constexpr char kTopTable[] = "log_statistic_top5";
inline constexpr char kUsageTable[] = "log_statistic_daily_usage";

constexpr long Days(long count) {
    return count * 86400;
}

/// In the order of the statements. That the daily usage goes before the days that it explains is on
/// purpose: it only has to reach over a month.
inline constexpr RetentionRow kRetention[] = {
    {"log_statistic_hour", TimeScale::Hour, Days(7)},
    {kTopTable, TimeScale::Hour, Days(7)},
    {"log_statistic_day", TimeScale::Day, Days(60)},
    {kTopTable, TimeScale::Day, Days(60)},
    {kUsageTable, TimeScale::Day, Days(35)},
    {"log_statistic_week", TimeScale::Week, Days(90)},
    {kTopTable, TimeScale::Week, Days(90)},
    {"log_statistic_month", TimeScale::Month, Days(360)},
    {kTopTable, TimeScale::Month, Days(360)},
};

}  // namespace statistic_log
