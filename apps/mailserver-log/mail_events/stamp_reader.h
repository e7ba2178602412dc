#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace serverlog::program {

/// When a line was logged.
struct Stamp {
    std::int64_t seconds = 0;       ///< since the epoch, from 0 to what 32 bits hold
    std::int32_t microseconds = 0;  ///< 0 where the line does not tell
};

/// Reads the times at the start of log lines, in order: RFC 3339 ("2026-11-22T10:00:00.5+01:00")
/// and RFC 3164 ("Nov 22 10:00:00", local time). The latter has no year. It gets the one that puts
/// it closest to the stamp before, once a stamp has told a year; until then the newest one that
/// does not put it more than a day, which a clock may be wrong by, into the future.
class StampReader {
 public:
    /// @param line    what stands behind the time is left in it; untouched if there is none
    /// @return false if it starts with no time, or one outside of what Stamp can hold
    bool Read(std::string_view& line, Stamp& stamp);

 private:
    struct Minute;  // a time without a year

    bool ReadRfc3164(std::string_view& line, Stamp& stamp);
    bool ReadRfc3339(std::string_view& line, Stamp& stamp);
    std::optional<std::int64_t> Resolve(const Minute& minute) const;

    std::optional<std::int64_t> neighbour_;  // the stamp before, once one has told a year
    // Most lines are of the same minute as the line before.
    std::string cached_text_;
    std::int64_t cached_seconds_ = 0;
};

}  // namespace serverlog::program
