#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mailserver-log/old_log/maillogger.h>
#include <mailserver/mail_conf.h>

#include <string>
#include <vector>

#include "support/child.h"
#include "support/fake_clock.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/statistics.h"

namespace {

using statistic_log::StatisticCount;
using statistic_log::TimeScale;
using test::FakeClock;
using test::LocalTime;
using test::RunOnFile;
using testing::ElementsAre;
using testing::IsEmpty;

using Rows = std::vector<std::string>;

constexpr long kHour = 3600;
const std::string kStatistic = test::kSpool + "log_statistic.db";
const std::string kLastCountTime = "log_last_count_time";

/// Events of all kinds in every hour. In each second hour one more name stands in front, so that
/// the lists of neighbours differ; of bounces there are two names only.
void FillLogs(long from, long until) {
    std::vector<test::MailEvent> mails;
    std::vector<test::SecurityEvent> rejects;
    const auto add = [&](long hour, const std::string& name, long number) {
        for (long i = 0; i < number; ++i) {
            const long date = hour + (i * 701 + number * 13) % kHour;
            mails.push_back({date, 0, name, "to"});
            mails.push_back({date, 1, "from", name});
            mails.push_back({date, 3, name, "to"});
            rejects.push_back({date, "reject", name, "s", "r"});
            rejects.push_back({date, "spam", "spam", "s", "r"});
            if (number < 3) {
                mails.push_back({date, 2, "from", name});
            }
        }
    };
    for (long hour = from; hour < until; hour += kHour) {
        for (int i = 1; i <= 6; ++i) {
            add(hour, "name''" + std::to_string(i), i);
        }
        if ((hour / kHour) % 2 != 0) {
            add(hour, "odd", 20);
        }
    }
    AddEvents("aggr_mail_log.db", mails);
    AddEvents("aggr_security_log.db", rejects);
}

class Traffic : public testing::Test {
 protected:
    void SetUp() override {
        SKIP_WITHOUT_SECOND_USER();
        test::EmptySpool();
    }

    static void SetLast(long last) {
        ASSERT_EQ(mailConfSet(kLastCountTime, std::to_string(last), false, 0), 0);
    }

    static std::string Last() {
        std::string value;
        EXPECT_EQ(mailConfGet(kLastCountTime, value), 0);
        return value;
    }
};

TEST_F(Traffic, TablesAreThoseOfTheModel) {
    const struct {
        const char* name;
        const char* zone;
        const char* from;  // of the log
        const char* until;
        const char* last;
        Rows cycles;  // in local time
        long repeat;  // so many more cycles, an hour apart, behind the last
        const char* rotated;
    } rows[] = {
        {"first run",
         "UTC",
         "2024-05-07 08:00:00",
         "2024-05-07 12:00:00",
         "2024-05-07 10:20:00",
         {"2024-05-07 10:25:00"},
         0,
         ""},
        {"on the hour nothing is counted",
         "UTC",
         "2024-05-07 08:00:00",
         "2024-05-07 12:00:00",
         "2024-05-07 10:00:00",
         {"2024-05-07 10:00:00"},
         0,
         ""},
        {"an hour becomes final after its end",
         "UTC",
         "2024-05-07 08:00:00",
         "2024-05-07 14:00:00",
         "2024-05-07 10:10:00",
         {"2024-05-07 10:15:00", "2024-05-07 10:55:00", "2024-05-07 11:05:00",
          "2024-05-07 12:00:00"},
         0,
         ""},
        {"hours that are caught up show the lists of the first",
         "UTC",
         "2024-05-07 06:00:00",
         "2024-05-07 14:00:00",
         "2024-05-07 09:30:00",
         {"2024-05-07 12:30:00"},
         0,
         ""},
        {"twelve hours are caught up",
         "UTC",
         "2024-05-07 00:00:00",
         "2024-05-08 14:00:00",
         "2024-05-07 23:30:00",
         {"2024-05-08 10:30:00"},
         1,
         ""},
        {"of more hours the last twelve",
         "UTC",
         "2024-05-07 00:00:00",
         "2024-05-08 14:00:00",
         "2024-05-07 08:45:00",
         {"2024-05-08 10:30:00"},
         1,
         ""},
        {"day of 23 hours",
         "Europe/Berlin",
         "2024-03-30 22:00:00",
         "2024-04-01 03:00:00",
         "2024-03-30 22:30:00",
         {"2024-03-30 22:40:00"},
         27,
         ""},
        {"day of 25 hours",
         "Europe/Berlin",
         "2024-10-26 22:00:00",
         "2024-10-28 03:00:00",
         "2024-10-26 22:30:00",
         {"2024-10-26 22:40:00"},
         28,
         ""},
        {"half an hour from UTC",
         "Asia/Kolkata",
         "2024-05-07 20:00:00",
         "2024-05-08 03:00:00",
         "2024-05-07 21:10:00",
         {"2024-05-07 21:10:10"},
         5,
         ""},
        {"end of a month of 31 days",
         "Europe/Berlin",
         "2024-01-31 20:00:00",
         "2024-02-01 03:00:00",
         "2024-01-31 20:10:00",
         {"2024-01-31 20:20:00"},
         6,
         ""},
        {"end of a year",
         "Europe/Berlin",
         "2024-12-31 20:00:00",
         "2025-01-01 03:00:00",
         "2024-12-31 20:10:00",
         {"2024-12-31 20:20:00"},
         6,
         ""},
        {"leap day",
         "Europe/Berlin",
         "2024-02-28 22:00:00",
         "2024-03-01 03:00:00",
         "2024-02-28 22:10:00",
         {"2024-02-28 22:20:00"},
         27,
         ""},
        {"a week begins",
         "America/New_York",
         "2024-05-05 20:00:00",
         "2024-05-06 03:00:00",
         "2024-05-05 20:10:00",
         {"2024-05-05 20:20:00"},
         6,
         ""},
        {"rotated in between",
         "Europe/Berlin",
         "2024-05-06 20:00:00",
         "2024-05-07 03:00:00",
         "2024-05-06 20:10:00",
         {"2024-05-06 20:20:00", "2024-05-06 22:20:00"},
         3,
         "2024-05-06 23:00:00"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        test::EmptySpool();
        test::SetZone(row.zone);
        FillLogs(LocalTime(row.from), LocalTime(row.until));
        std::vector<long> cycles;
        for (const std::string& time : row.cycles) {
            cycles.push_back(LocalTime(time));
        }
        for (long i = 0; i < row.repeat; ++i) {
            cycles.push_back(cycles.back() + kHour);
        }
        if (*row.rotated != '\0') {
            for (const std::string log : {"mail", "security"}) {
                test::Rotate(log, LocalTime(row.rotated));
            }
        }
        SetLast(LocalTime(row.last));
        FakeClock::Set(cycles.front());
        MailLogger logger(300);
        for (const long now : cycles) {
            FakeClock::Set(now);
            logger.statistic();
            ASSERT_EQ(Last(), std::to_string(now));
        }
        EXPECT_EQ(test::StatisticRows(),
                  test::ExpectedRows(row.zone, LocalTime(row.last), {}, cycles));
    }
}

TEST_F(Traffic, RemovesWhatIsTooOldInTheHourThatBeginsADay) {
    const struct {
        const char* table;
        int scale;
        long days;
    } limits[] = {
        {"log_statistic_hour", 0, 7},         {"log_statistic_top5", 25, 7},
        {"log_statistic_day", 0, 60},         {"log_statistic_top5", 8, 60},
        {"log_statistic_week", 0, 90},        {"log_statistic_top5", 9, 90},
        {"log_statistic_month", 0, 360},      {"log_statistic_top5", 7, 360},
        {"log_statistic_daily_usage", 0, 35},
    };
    test::SetZone("Europe/Berlin");
    MailLogger logger(300);
    ASSERT_EQ(logger.saveStatistic(0, {}), 0);  // makes the file
    const auto run = [&](const char* local_time, const std::string& when) {
        const long now = LocalTime(local_time);
        for (const auto& limit : limits) {
            RunOnFile(kStatistic, "DELETE FROM " + std::string(limit.table));
        }
        for (const auto& limit : limits) {
            const std::string scale = limit.scale == 0 ? "" : ", scale";
            const std::string value = limit.scale == 0 ? "" : ", " + std::to_string(limit.scale);
            for (const long time : {now - limit.days * 86400 - 1, now - limit.days * 86400}) {
                RunOnFile(kStatistic, "INSERT OR REPLACE INTO " + std::string(limit.table) +
                                          "(time" + scale + ") VALUES(" + std::to_string(time) +
                                          value + ")");
            }
        }
        FakeClock::Set(now);
        EXPECT_EQ(logger.removeOldLog(), 0);
        std::string left;
        for (const auto& limit : limits) {
            const std::string where =
                limit.scale == 0 ? "" : " WHERE scale = " + std::to_string(limit.scale);
            left += RunOnFile(kStatistic,
                              "SELECT COUNT(*) FROM " + std::string(limit.table) + where)[0];
        }
        return when + ": " + left;
    };
    EXPECT_EQ(run("2024-05-07 23:59:59", "before"), "before: 222222222");
    EXPECT_EQ(run("2024-05-08 00:00:00", "midnight"), "midnight: 111111111");
    EXPECT_EQ(run("2024-05-08 00:59:59", "first hour"), "first hour: 111111111");
    EXPECT_EQ(run("2024-05-08 01:00:00", "after"), "after: 222222222");
}

TEST_F(Traffic, BeginsWhereItEndedUnlessThatIsNoTime) {
    test::SetZone("UTC");
    const long now = LocalTime("2024-05-07 10:30:00");
    const std::string hour = std::to_string(now - 1800);
    const std::string before = std::to_string(now - 5400);
    const struct {
        const char* name;
        std::string setting;
        Rows hours;
    } rows[] = {
        {"none", "", {hour}},
        {"zero", "0", {hour}},
        {"no number", "yesterday", {hour}},
        {"future", std::to_string(now + 1), {hour}},
        {"now", std::to_string(now), {hour}},
        {"an hour ago", std::to_string(now - kHour), {before, hour}},
        {"only 32 bits count", std::to_string(now - kHour + (1L << 32)), {before, hour}},
    };
    for (const auto& row : rows) {
        test::EmptySpool();
        ASSERT_EQ(mailConfSet(kLastCountTime, row.setting, false, 0), 0);
        FakeClock::Set(now);
        MailLogger logger(300);
        EXPECT_EQ(logger.error(), 0) << row.name;
        logger.statistic();
        EXPECT_EQ(RunOnFile(kStatistic, "SELECT time FROM log_statistic_hour ORDER BY time"),
                  row.hours)
            << row.name;
    }
}

TEST_F(Traffic, LongNamesAndQuotesStayWhole) {
    test::SetZone("UTC");
    const long now = LocalTime("2024-05-07 10:30:00");
    const std::string name = std::string(5000, 'x') + "');DROP TABLE log_statistic_top5;--";
    StatisticCount count;
    count.hour[0] = {{name, 3}};
    FakeClock::Set(now);
    MailLogger logger(300);
    ASSERT_EQ(logger.saveStatistic(now, count), 0);
    EXPECT_THAT(RunOnFile(kStatistic,
                          "SELECT name, num FROM log_statistic_top5 WHERE scale = 25 AND type = 0 "
                          "ORDER BY rank LIMIT 2"),
                ElementsAre(name + "|3", "--|0"));
}

TEST_F(Traffic, UnknownScalesAreRefused) {
    MailLogger logger(300);
    StatisticCount count;
    SQLCmd commands;
    constexpr auto kUnknown = static_cast<TimeScale>(1);
    EXPECT_EQ(logger.composeInsertCmd(commands, 0, count, kUnknown), -1);
    EXPECT_EQ(logger.getTop5NumOtherScale(0, MailStatus::Sent, count.hour[0], kUnknown), -1);
    EXPECT_EQ(logger.getTop5NumOtherScale(0, MailStatus::Sent, count.hour[0], TimeScale::Hour), -1);
    EXPECT_THAT(commands.statements(), IsEmpty());
}

}  // namespace
