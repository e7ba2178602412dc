#include "listing/time_argument.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/table.h"
#include "support/time_zone.h"

namespace serverlog::program {
namespace {

class TimeArgument : public testing::Test {
 protected:
    TimeArgument() { test::SetZone("CET-1CEST,M3.5.0,M10.5.0/3"); }
};

TEST_F(TimeArgument, StandsForASpan) {
    constexpr std::time_t kNow = 1800000000;
    const test::Table<const char*, std::time_t, std::time_t> rows = {
        {"2026-11-22", 1795302000, 1795302000 + 86399},
        {"2026-03-29", 1774738800, 1774738800 + 23 * 3600 - 1},  // the clock goes forward
        {"2026-10-25", 1792879200, 1792879200 + 25 * 3600 - 1},  // and back
        {"2026-12-31", 1798671600, 1798671600 + 86399},
        {"2026-11-22 10:00:00", 1795338000, 1795338000},
        {"2026-11-22T10:00:00", 1795338000, 1795338000},
        {"2026-07-22 10:00", 1784707200, 1784707200 + 59},
        {"90s", kNow - 90, kNow - 90},
        {"10m", kNow - 600, kNow - 600},
        {"2h", kNow - 7200, kNow - 7200},
        {"3d", kNow - 259200, kNow - 259200},
        {"1w", kNow - 604800, kNow - 604800},
    };
    for (const auto& [text, first, last] : rows) {
        SCOPED_TRACE(text);
        const TimeSpan span = ParseTime(text, kNow);
        EXPECT_EQ(span.first, first);
        EXPECT_EQ(span.last, last);
    }
}

TEST_F(TimeArgument, IsRefusedUnlessItIsATime) {
    for (const char* text :
         {"", "h", "2", "-2h", "2hours", "2h ", "2x", "99999999999999999999d", "9999999999999999w",
          "2026", "2026-11", "2026-02-30", "2026-13-01", "26-11-22", "2026-11-22 25:00:00",
          "2026-11-22x", "2026-11-22 10:00:00x", "2026/11/22", "yesterday"}) {
        EXPECT_THROW(ParseTime(text, 1800000000), std::invalid_argument) << text;
    }
}

}  // namespace
}  // namespace serverlog::program
