#pragma once

#include <mailserver-log/export.h>

#include <cstddef>
#include <ctime>
#include <string_view>

namespace serverlog::utils {

/// Local times as texts such as "2026-11-22 10:00:00", one after the other.
///
/// Rows that follow each other mostly fall into the same minute, of which only the seconds are
/// written anew, without localtime_r(3) and strftime(3) for each. An object is for one thread, and
/// goes by the time zone that the process has when it is made.
class MAILSERVER_LOG_EXPORT TimeText {
 public:
    TimeText() { tzset(); }

    /// @param time  seconds since the epoch
    /// @return      valid until the next call; empty for a year that is beyond the calendar
    std::string_view Of(std::time_t time);

    ///@{
    /// The two words of such a text. The time of day is the one whose length is known.
    static std::string_view DateOf(std::string_view text) {
        return text.substr(0, text.size() - kTimeOfDay - 1);
    }
    static std::string_view TimeOf(std::string_view text) {
        return text.substr(text.size() - kTimeOfDay);
    }
    ///@}

 private:
    bool Format(std::time_t time);

    static constexpr std::size_t kTimeOfDay = sizeof "10:00:00" - 1;
    static constexpr int kMinute = 60;

    // The text of the last minute, and its first second. Offsets from UTC are whole minutes since
    // 1972, so a clock changes with a minute and never within one.
    char text_[64] = {};
    std::size_t size_ = 0;
    std::time_t minute_ = 0;
};

}  // namespace serverlog::utils
