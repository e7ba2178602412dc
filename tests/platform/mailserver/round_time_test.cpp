#include <gtest/gtest.h>
#include <mailserver/round_time.h>

#include <ctime>
#include <string>

#include "support/table.h"
#include "support/time_zone.h"

namespace {

// Reads "2024-03-31 03:30:00 +0200".
long Seconds(const std::string& text) {
    std::tm fields = {};
    const char* end = strptime(text.c_str(), "%Y-%m-%d %H:%M:%S %z", &fields);
    if (end == nullptr || *end != '\0') {
        throw std::invalid_argument(text);
    }
    const long offset = fields.tm_gmtoff;
    return timegm(&fields) - offset;
}

std::string Text(long time) {
    std::tm fields = {};
    localtime_r(&time, &fields);
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %z", &fields);
    return text;
}

TEST(GetRoundTime, StartOfThePeriod) {
    constexpr char kBerlin[] = "Europe/Berlin";
    const test::Table<const char*, const char*, CountInterval, const char*, const char*> rows = {
        {"hour behind the skipped one", kBerlin, CountInterval::Hour, "2024-03-31 03:30:00 +0200",
         "2024-03-31 03:00:00 +0200"},
        {"repeated hour, first pass", kBerlin, CountInterval::Hour, "2024-10-27 02:59:59 +0200",
         "2024-10-27 02:00:00 +0200"},
        {"repeated hour, second pass", kBerlin, CountInterval::Hour, "2024-10-27 02:00:01 +0100",
         "2024-10-27 02:00:00 +0100"},
        {"hour that begins in its middle", "Australia/Lord_Howe", CountInterval::Hour,
         "2024-10-06 02:45:00 +1100", "2024-10-06 02:30:00 +1100"},
        {"day", kBerlin, CountInterval::Day, "2024-07-03 23:59:59 +0200",
         "2024-07-03 00:00:00 +0200"},
        {"day before the epoch", kBerlin, CountInterval::Day, "1969-12-30 00:30:00 +0100",
         "1969-12-30 00:00:00 +0100"},
        {"day without a midnight", "America/Sao_Paulo", CountInterval::Day,
         "2018-11-04 05:00:00 -0200", "2018-11-04 01:00:00 -0200"},
        {"day with two midnights", "America/Havana", CountInterval::Day,
         "2024-11-03 12:00:00 -0500", "2024-11-03 00:00:00 -0400"},
        {"week from Sunday, over a change", kBerlin, CountInterval::Week,
         "2024-03-31 23:59:59 +0200", "2024-03-25 00:00:00 +0100"},
        {"week over a year's end", kBerlin, CountInterval::Week, "2026-01-01 12:00:00 +0100",
         "2025-12-29 00:00:00 +0100"},
        {"month over a change", kBerlin, CountInterval::Month, "2024-10-31 23:59:59 +0100",
         "2024-10-01 00:00:00 +0200"},
    };
    for (const auto& [name, zone, interval, time, expected] : rows) {
        test::SetZone(zone);
        const long start = getRoundTime(Seconds(time), interval);
        EXPECT_EQ(Text(start), expected) << name;
    }
}

TEST(GetNextMonthStartTime, FirstMomentOfTheNextMonth) {
    const test::Table<const char*, const char*, const char*> rows = {
        {"Europe/Berlin", "2024-01-31 23:59:59 +0100", "2024-02-01 00:00:00 +0100"},
        {"Europe/Berlin", "2024-03-01 00:00:00 +0100", "2024-04-01 00:00:00 +0200"},
        {"Europe/Berlin", "2024-12-31 12:00:00 +0100", "2025-01-01 00:00:00 +0100"},
        {"America/Sao_Paulo", "1985-10-15 00:00:00 -0300", "1985-11-01 00:00:00 -0300"},
    };
    for (const auto& [zone, time, expected] : rows) {
        test::SetZone(zone);
        EXPECT_EQ(Text(getNextMonthStartTime(Seconds(time))), expected) << time;
    }
}

}  // namespace
