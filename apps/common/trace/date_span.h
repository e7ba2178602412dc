#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace serverlog::program {

/// The dates from a first to a last one, both included; none at first.
struct DateSpan {
    std::int64_t first = std::numeric_limits<std::int64_t>::max();
    std::int64_t last = std::numeric_limits<std::int64_t>::min();

    void Include(std::int64_t date) {
        first = std::min(first, date);
        last = std::max(last, date);
    }

    /// Whether a date lies within it, or at most so many seconds before or behind it.
    bool IsNear(std::int64_t date, std::int64_t before, std::int64_t behind) const {
        return first <= last && date >= first - before && date <= last + behind;
    }
};

}  // namespace serverlog::program
