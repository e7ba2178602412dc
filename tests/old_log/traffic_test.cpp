#include <gmock/gmock.h>
#include <mailserver-log/old_log/maillogger.h>
#include <mailserver/mail_conf.h>

#include <string>
#include <vector>

#include "support/child.h"
#include "support/fake_clock.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/statistics.h"
#include "support/table.h"

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

/// Events of all kinds in every hour. In each second hour one more name stands in front, so that
/// the lists of neighbours differ; of bounces there are two names only.
void FillLogs(long from, long until) {
    const Rows addresses = {"Ann@OWN.example",
                            "bob@own.example",
                            "eve@far.example",
                            "Eve@far.example",
                            "x@notown.example",
                            "y@second.example",
                            ""};
    const auto address = [&addresses](long number) {
        return addresses[static_cast<std::size_t>(number) % addresses.size()];
    };
    const Rows types = {"spam", "content", "virus", "spam"};
    std::vector<test::MailEvent> mails;
    std::vector<test::SecurityEvent> threats;
    const auto add = [&](long hour, const std::string& name, long number) {
        for (long i = 0; i < number; ++i) {
            const long date = hour + (i * 701 + number * 13) % kHour;
            mails.push_back({date, 0, name, "to"});
            mails.push_back({date, 1, "from", name});
            mails.push_back({date, 3, name, "to"});
            if (number < 3) {
                mails.push_back({date, 2, "from", name});
            }
            // Of the server's domains only a few: the place of each that comes in is looked up.
            const bool inside = number == 2;
            threats.push_back({date, "reject", name, inside ? address(hour / kHour + i) : "s",
                               inside ? address(hour / kHour / 3) : "r"});
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
    for (long turn = 0; from + turn * 397 < until; ++turn) {
        threats.push_back({from + turn * 397, types[static_cast<std::size_t>(turn) % types.size()],
                           "192.0.2.1", address(turn), address(turn / 3)});
    }
    AddEvents("aggr_mail_log.db", mails);
    AddEvents("aggr_security_log.db", threats);
}

class Traffic : public testing::Test {
 protected:
    void SetUp() override {
        SKIP_WITHOUT_SECOND_USER();
        test::EmptySpool();
    }
};

// Those of the threats too: both are counted in one cycle, up to one time.
TEST_F(Traffic, TablesAreThoseOfTheModel) {
    constexpr char kBerlin[] = "Europe/Berlin";
    const struct {
        const char* name;
        const char* zone;
        int domains;  // of the server's own
        std::string last;
        std::vector<long> cycles;  // in minutes after `last`
        long repeat;               // so many more cycles, an hour apart, behind the last
        long rotated;              // in minutes after `last`; 0: never
    } rows[] = {
        {"first run", "UTC", 1, "2024-05-07 10:20:00", {5}, 0, 0},
        {"no domains", "UTC", 0, "2024-05-07 08:10:00", {1}, 1, 0},
        {"on the hour nothing is counted", "UTC", 1, "2024-05-07 10:00:00", {0}, 0, 0},
        {"hour is final after its end", "UTC", 1, "2024-05-07 10:10:00", {5, 45, 55, 110}, 0, 0},
        {"hours caught up share the first one's lists",
         "UTC",
         1,
         "2024-05-07 09:30:00",
         {180},
         0,
         0},
        {"twelve hours are caught up", "UTC", 1, "2024-05-07 23:30:00", {660}, 1, 0},
        {"of more hours the last twelve", "UTC", 1, "2024-05-07 08:45:00", {1545}, 1, 0},
        {"day of 23 hours", kBerlin, 1, "2024-03-30 22:30:00", {10}, 27, 0},
        {"day of 25 hours", kBerlin, 1, "2024-10-26 22:30:00", {10}, 28, 0},
        {"half an hour from UTC", "Asia/Kolkata", 1, "2024-05-07 21:10:00", {1}, 5, 0},
        {"end of a month of 31 days", kBerlin, 1, "2024-01-31 20:10:00", {10}, 6, 0},
        {"end of a year", kBerlin, 1, "2024-12-31 20:10:00", {10}, 6, 0},
        {"leap day", kBerlin, 1, "2024-02-28 22:10:00", {10}, 27, 0},
        {"week begins, two domains", "America/New_York", 2, "2024-05-05 20:10:00", {10}, 6, 0},
        {"rotated in between", kBerlin, 1, "2024-05-06 20:10:00", {10, 130}, 3, 170},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        test::EmptySpool();
        test::SetZone(row.zone);
        Rows domains = {"own.example", "second.example"};
        domains.resize(static_cast<std::size_t>(row.domains));
        test::SetDomains(domains);
        const long last = LocalTime(row.last);
        std::vector<long> cycles;
        for (const long minutes : row.cycles) {
            cycles.push_back(last + minutes * 60);
        }
        for (long i = 0; i < row.repeat; ++i) {
            cycles.push_back(cycles.back() + kHour);
        }
        FillLogs(LocalTime(row.last.substr(0, 13) + ":00:00") - 3 * kHour,
                 cycles.back() + 2 * kHour);
        if (row.rotated != 0) {
            for (const std::string log : {"mail", "security"}) {
                test::Rotate(log, last + row.rotated * 60);
            }
        }
        test::BeginAt(last);
        FakeClock::Set(cycles.front());
        MailLogger logger(300);
        for (const long now : cycles) {
            FakeClock::Set(now);
            EXPECT_EQ(logger.securityStatistic(), 0);
            logger.statistic();
            std::string counted;
            ASSERT_EQ(mailConfGet(test::kLastCountTime, counted), 0);
            ASSERT_EQ(counted, std::to_string(now));
        }
        EXPECT_EQ(test::StatisticRows(), test::ExpectedRows(row.zone, last, domains, cycles));
    }
}

TEST_F(Traffic, RemovesWhatIsTooOldInTheHourThatBeginsADay) {
    const test::Table<std::string, std::string, long> limits = {
        {"log_statistic_hour", "", 7},         {"log_statistic_top5", "25", 7},
        {"log_statistic_day", "", 60},         {"log_statistic_top5", "8", 60},
        {"log_statistic_week", "", 90},        {"log_statistic_top5", "9", 90},
        {"log_statistic_month", "", 360},      {"log_statistic_top5", "7", 360},
        {"log_statistic_daily_usage", "", 35},
    };
    test::SetZone("Europe/Berlin");
    MailLogger logger(300);
    ASSERT_EQ(logger.saveStatistic(0, {}), 0);  // makes the file
    // How many rows are left of two for each limit, one older than that and one of its age.
    const auto left_at = [&](const char* local_time) {
        const long now = LocalTime(local_time);
        FakeClock::Set(now);
        for (const auto& [table, scale, days] : limits) {
            RunOnFile(kStatistic, "DELETE FROM " + table);
        }
        for (const auto& [table, scale, days] : limits) {
            const std::string insert =
                "INSERT OR REPLACE INTO " + table +
                (scale.empty() ? "(time) VALUES(" : "(scale, time) VALUES(" + scale + ",");
            const long oldest = now - days * 86400;
            RunOnFile(kStatistic, insert + std::to_string(oldest - 1) + ");" + insert +
                                      std::to_string(oldest) + ")");
        }
        EXPECT_EQ(logger.removeOldLog(), 0);
        std::string left;
        for (const auto& [table, scale, days] : limits) {
            const std::string where = scale.empty() ? "" : " WHERE scale = " + scale;
            left += RunOnFile(kStatistic, "SELECT COUNT(*) FROM " + table + where)[0];
        }
        return left;
    };
    EXPECT_EQ(left_at("2024-05-07 23:59:59"), "222222222");
    EXPECT_EQ(left_at("2024-05-08 00:00:00"), "111111111");
    EXPECT_EQ(left_at("2024-05-08 00:59:59"), "111111111");
    EXPECT_EQ(left_at("2024-05-08 01:00:00"), "222222222");
}

TEST_F(Traffic, BeginsWhereItEndedUnlessThatIsNoTime) {
    test::SetZone("UTC");
    const long now = LocalTime("2024-05-07 10:30:00");
    const std::string hour = std::to_string(now - 1800);
    const std::string before = std::to_string(now - 5400);
    const test::Table<const char*, std::string, Rows> rows = {
        {"none", "", {hour}},
        {"zero", "0", {hour}},
        {"no number", "yesterday", {hour}},
        {"future", std::to_string(now + 1), {hour}},
        {"now", std::to_string(now), {hour}},
        {"an hour ago", std::to_string(now - kHour), {before, hour}},
        {"only 32 bits count", std::to_string(now - kHour + (1L << 32)), {before, hour}},
    };
    for (const auto& [name, setting, hours] : rows) {
        test::EmptySpool();
        ASSERT_EQ(mailConfSet(test::kLastCountTime, setting, false, 0), 0);
        FakeClock::Set(now);
        MailLogger logger(300);
        EXPECT_EQ(logger.error(), 0) << name;
        logger.statistic();
        EXPECT_EQ(RunOnFile(kStatistic, "SELECT time FROM log_statistic_hour ORDER BY time"), hours)
            << name;
    }
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
