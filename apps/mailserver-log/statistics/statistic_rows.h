#pragma once

#include <cstdint>
#include <string>
#include <vector>

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

/// Which periods are read.
///
/// @param scale  "hour", "day", "week" or "month"; of threats only the first two
///
/// Both give rows by kind in the order of the table above, then by time. They throw Failure if the
/// statistics are missing or can't be read.
std::vector<StatisticRow> ReadTraffic(const std::string& scale);
std::vector<StatisticRow> ReadThreats(const std::string& scale);

}  // namespace serverlog::program
