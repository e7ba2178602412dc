#pragma once

#include <string>

namespace serverlog::webapi::internal {

/// A point in time in the two words that lists and exports show: local date and time of day, such
/// as "2026-11-22" and "10:00:00".
struct TimeWords {
    /// @param seconds  since the epoch
    explicit TimeWords(long seconds);

    std::string date;
    std::string time;
};

}  // namespace serverlog::webapi::internal
