#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// What happened to a mail. The numbers are stored: in the column `type` of the statistics and, but
/// for Rejected, in the column `status` of the mail log.
enum class MailStatus : int { Sent = 0, Received = 1, Bounced = 2, Resent = 3, Rejected = 4 };

namespace statistic_log {

/// How many values MailStatus has; each indexes an array of this size.
inline constexpr std::size_t kStatusCount = 5;

/// Length of the periods that are counted. The numbers are stored, in the column `scale`.
enum class TimeScale : int { Month = 7, Day = 8, Week = 9, Hour = 25 };

/// Names and how often each occurred, the most frequent first.
using NameCounts = std::vector<std::pair<std::string, int>>;

/// A list for each MailStatus.
using ListsByStatus = std::array<NameCounts, kStatusCount>;

/// What was counted of one hour.
struct StatisticCount {
    std::array<int, kStatusCount> counts{};  ///< mails of the hour, by MailStatus
    ListsByStatus hour;                      ///< top lists of the hour,
    ListsByStatus day;                       ///< and of the day,
    ListsByStatus week;                      ///< the week
    ListsByStatus month;                     ///< and the month that it lies in
};

}  // namespace statistic_log
