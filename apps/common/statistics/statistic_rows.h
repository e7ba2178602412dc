#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "process/failure.h"

namespace serverlog::program {

/// One number of the statistics.
///
/// | kind      | group              | name       | what is counted                              |
/// |-----------|--------------------|------------|----------------------------------------------|
/// | `count`   | `sent`, …          |            | mails of a status                            |
/// | `top`     | `sent`, …          | an address | mails of a status, of the five most frequent |
/// | `threat`  | `inbound`, …       | its type   | threats                                      |
/// | `address` | `inbound sender`,… | an address | blocked mails                                |
/// | `origin`  | country code       | a place    | blocked mails                                |
struct StatisticRow {
    std::string kind;
    std::int64_t time;  ///< start of the period, in seconds since the epoch
    std::string group;
    std::string name;
    std::int64_t count;
};

/// The periods that begin at `from` or later and before `to`, in seconds since the epoch.
struct TimeRange {
    std::int64_t from = std::numeric_limits<std::int64_t>::min();
    std::int64_t to = std::numeric_limits<std::int64_t>::max();
};

/// Nothing has been counted yet: the file of the statistics is missing.
class NoStatistics : public Failure {
 public:
    using Failure::Failure;
};

/// The scales that are counted, from the shortest: "hour", "day", "week" and "month" for traffic,
/// the first two for threats.
const std::vector<std::string>& TrafficScales();
const std::vector<std::string>& ThreatScales();

/// Reads what was counted.
///
/// @param scale  one of TrafficScales() or ThreatScales()
///
/// Both give rows by kind in the order of the table above, then by time. They throw NoStatistics,
/// and Failure if the statistics can't be read.
std::vector<StatisticRow> ReadTraffic(const std::string& scale, const TimeRange& range = {});
std::vector<StatisticRow> ReadThreats(const std::string& scale, const TimeRange& range = {});

}  // namespace serverlog::program
