#pragma once

#include <mailserver-log/utils/time_text.h>

#include <string_view>

namespace serverlog::webapi::internal {

/// A point in time in the two words that lists and exports show: local date and time of day, such
/// as "2026-11-22" and "10:00:00".
struct TimeWords {
    std::string_view date;
    std::string_view time;
};

/// The times of the rows of one list or export.
class TimeFormat {
 public:
    /// What utils::ConvertToTimeString gives; valid until the next call, as are the words.
    /// @param seconds  since the epoch
    std::string_view TextOf(long seconds);

    /// The two words of it.
    TimeWords Of(long seconds);

 private:
    utils::TimeText text_;
};

}  // namespace serverlog::webapi::internal
