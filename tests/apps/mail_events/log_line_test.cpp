#include "mail_events/log_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/fake_clock.h"
#include "support/table.h"
#include "support/time_zone.h"
#include "utils/time.h"

namespace serverlog::program {
namespace {

std::string Show(const LogLine& line) {
    return std::string(line.host) + "|" + std::string(line.program) + "|" +
           std::string(line.process) + "|" + std::string(line.text);
}

TEST(LogLine, IsReadInEveryForm) {
    const test::Table<const char*, std::string, std::string> cases = {
        {"log file", "Nov 22 10:00:00 mx1 postfix/smtpd[12]: text: more",
         "mx1|postfix/smtpd|12|text: more"},
        {"one digit of the day", "Nov  2 10:00:00 mx1 cron[1]: x", "mx1|cron|1|x"},
        {"no process", "Nov 22 10:00:00 mx1 kernel: x", "mx1|kernel||x"},
        {"/dev/log", "<22>Nov 22 10:00:00 postfix/smtpd[12]: x\r", "here|postfix/smtpd|12|x"},
        {"RFC 3339", "2026-11-22T10:00:00.123456+01:00 mx1 postfix/smtpd[12]: x",
         "mx1|postfix/smtpd|12|x"},
        {"RFC 5424", "<22>1 2026-11-22T10:00:00Z mx1 postfix/smtpd 12 - - x",
         "mx1|postfix/smtpd|12|x"},
        {"RFC 5424 with data and nobody",
         "<22>1 2026-11-22T10:00:00Z - app - ID [a b=\"]\\\"\"][c] \xef\xbb\xbfx y",
         "here|app||x y"},
        {"escapes of rsyslog", "Nov 22 10:00:00 mx1 a: x#011y#134#999", "mx1|a||x\ty#134#999"},
        {"a line of the system log's own", "Nov 22 10:00:00 mx1 -- MARK --", "mx1|||-- MARK --"},
        {"a bracket that nothing closes", "Nov 22 10:00:00 mx1 a[1: x", "mx1|||a[1: x"},
        {"no text", "Nov 22 10:00:00 mx1 a:", "mx1|a||"},
        {"no time", "hello", "unreadable"},
        {"empty", "", "unreadable"},
        {"no such month", "Nox 22 10:00:00 mx1 a: x", "unreadable"},
        {"a month out of two", "ovD 22 10:00:00 mx1 a: x", "unreadable"},
        {"no such day", "Feb 30 10:00:00 mx1 a: x", "unreadable"},
        {"no such hour", "Nov 22 24:00:00 mx1 a: x", "unreadable"},
        {"time alone", "Nov 22 10:00:00", "unreadable"},
        {"no zone", "2026-11-22T10:00:00 mx1 a: x", "unreadable"},
        {"no such day in a full time", "2026-02-30T10:00:00Z mx1 a: x", "unreadable"},
        {"before the epoch", "1970-01-01T00:00:00+01:00 mx1 a: x", "unreadable"},
        {"later than a row can hold", "2038-01-19T03:14:08Z mx1 a: x", "unreadable"},
        {"data that does not end", "<22>1 2026-11-22T10:00:00Z mx1 app - - [a b=\"] x",
         "unreadable"},
        {"too long", "Nov 22 10:00:00 mx1 a: " + std::string(1 << 16, 'x'), "unreadable"},
    };
    for (const auto& [name, logged, parts] : cases) {
        SCOPED_TRACE(name);
        LogLineReader reader("here");
        LogLine line;
        EXPECT_EQ(reader.Read(logged, line) ? Show(line) : "unreadable", parts);
    }
}

TEST(LogLine, HasTheYearThatItWasLoggedIn) {
    test::SetZone("UTC");
    const test::Table<const char*, const char*, std::vector<std::string>, std::vector<std::string>>
        cases = {
            {"today", "2026-11-22 12:00:00", {"Nov 22 10:00:00"}, {"2026-11-22 10:00:00"}},
            {"last December, read in January",
             "2027-01-01 00:00:05",
             {"Dec 31 23:59:59", "Jan  1 00:00:01"},
             {"2026-12-31 23:59:59", "2027-01-01 00:00:01"}},
            {"the sender's clock is ahead over New Year",
             "2026-12-31 23:59:50",
             {"Jan  1 00:00:10", "Dec 31 23:59:49", "Jan  1 00:00:11"},
             {"2027-01-01 00:00:10", "2026-12-31 23:59:49", "2027-01-01 00:00:11"}},
            {"a day that would lie in the future",
             "2026-11-22 12:00:00",
             {"Nov 24 10:00:00"},
             {"2025-11-24 10:00:00"}},
            {"29 February", "2027-02-01 00:00:00", {"Feb 29 10:00:00"}, {"2024-02-29 10:00:00"}},
            {"a step of the clock backwards",
             "2026-11-22 12:00:00",
             {"Nov 22 10:00:05", "Nov 22 10:00:01"},
             {"2026-11-22 10:00:05", "2026-11-22 10:00:01"}},
            {"an old log of both forms, over New Year",
             "2026-11-22 12:00:00",
             {"2023-12-31T23:59:58.5Z", "Dec 31 23:59:59", "Jan  1 00:00:00", "Dec 31 23:59:59",
              "2024-01-01T00:30:01+00:30", "Jan  1 00:00:02"},
             {"2023-12-31 23:59:58", "2023-12-31 23:59:59", "2024-01-01 00:00:00",
              "2023-12-31 23:59:59", "2024-01-01 00:00:01", "2024-01-01 00:00:02"}},
            {"a leap second",
             "2026-11-22 12:00:00",
             {"2016-12-31T23:59:60Z"},
             {"2017-01-01 00:00:00"}},
        };
    for (const auto& [name, now, stamps, expected] : cases) {
        SCOPED_TRACE(name);
        test::FakeClock::Set(test::LocalTime(now));
        LogLineReader reader("here");
        std::vector<std::string> times;
        for (const std::string& stamp : stamps) {
            const std::string text = stamp + " mx1 a: x";
            LogLine line;
            times.push_back(reader.Read(text, line) ? utils::ConvertToTimeString(line.stamp.seconds)
                                                    : "unreadable");
        }
        EXPECT_EQ(times, expected);
    }
}

}  // namespace
}  // namespace serverlog::program
