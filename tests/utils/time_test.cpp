#include "utils/time.h"

#include <gtest/gtest.h>
#include <mailserver-log/utils/time_text.h>

#include <limits>

#include "support/table.h"
#include "support/time_zone.h"

namespace serverlog::utils {
namespace {

// Central Europe's clock without a need for the time zone files.
constexpr char kSummerTimeZone[] = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(Time, TextIsLocalTime) {
    const test::Table<const char*, long, const char*> rows = {
        {"UTC", 0, "1970-01-01 00:00:00"},
        {"UTC", -1, "1969-12-31 23:59:59"},
        {kSummerTimeZone, 1795341600, "2026-11-22 11:00:00"},
        {kSummerTimeZone, 1774745999, "2026-03-29 01:59:59"},
        {kSummerTimeZone, 1774746000, "2026-03-29 03:00:00"},
        {"UTC", 4102444800, "2100-01-01 00:00:00"},
        {"UTC", 253402300799, "9999-12-31 23:59:59"},
        {"UTC", 253402300800, "10000-01-01 00:00:00"},
    };
    for (const auto& [zone, time, text] : rows) {
        test::SetZone(zone);
        EXPECT_EQ(ConvertToTimeString(time), text) << zone << ' ' << time;
    }
}

TEST(Time, TextOfManyIsThatOfEach) {
    test::SetZone(kSummerTimeZone);
    TimeText text;
    // Around both changes of the clock, forwards and backwards, within minutes and across them.
    for (const long around : {0L, 1774746000L, 1792890000L, -86400L}) {
        for (const long step : {1L, -1L, 7L, -59L, 60L, -3600L}) {
            for (long i = -70; i <= 70; ++i) {
                const long time = around + i * step;
                EXPECT_EQ(text.Of(time), ConvertToTimeString(time)) << time;
            }
        }
    }
    constexpr long kBeyondTheCalendar = std::numeric_limits<long>::max();
    EXPECT_EQ(text.Of(kBeyondTheCalendar), "");
    EXPECT_EQ(ConvertToTimeString(kBeyondTheCalendar), "1900-01-00 00:00:00");
    EXPECT_EQ(text.Of(0), "1970-01-01 01:00:00");
}

TEST(Time, DayStartsWithoutDaylightSaving) {
    // The start is what ConvertToTimeString makes of it.
    const test::Table<const char*, const char*, const char*> rows = {
        {"UTC", "2026/11/22", "2026-11-22 00:00:00"},
        {kSummerTimeZone, "2026/11/22", "2026-11-22 00:00:00"},
        {kSummerTimeZone, "2026/07/01", "2026-07-01 01:00:00"},
        {kSummerTimeZone, "2026/03/29", "2026-03-29 00:00:00"},
        {"UTC", "2026/1/2 10:00:00", "2026-01-02 00:00:00"},
        // Fields that could not be read stay zero: day 0 is the day before the first.
        {"UTC", "2026/11", "2026-10-31 00:00:00"},
        {"UTC", "2026-11-22", "2025-12-31 00:00:00"},
        {"UTC", "", "1899-12-31 00:00:00"},
    };
    for (const auto& [zone, date, start] : rows) {
        test::SetZone(zone);
        EXPECT_EQ(ConvertToTimeString(ConvertTimeStringToTime(date)), start) << zone << ' ' << date;
    }
}

}  // namespace
}  // namespace serverlog::utils
