#include <gmock/gmock.h>
#include <mailserver/file_lock.h>
#include <mailserver/mail_conf.h>
#include <sched.h>
#include <signal.h>

#include <ctime>
#include <filesystem>
#include <sstream>
#include <string>

#include "old_log/create_scripts.h"
#include "statistics/statistic_view.h"
#include "support/child.h"
#include "support/program.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/statistics.h"
#include "support/text_file.h"

namespace {

using test::Ended;
using test::Program;
using test::RunOnFile;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kStatistic = test::kSpool + "log_statistic.db";
const std::string kSecurityStatistic = test::kSpool + "security_statistic.db";
const Program::Environment kUtc = {{"TZ", "UTC0"}};

class Statistics : public testing::Test {
 protected:
    void SetUp() override {
        SKIP_WITHOUT_SECOND_USER();
        test::EmptySpool();
        ASSERT_EQ(mailConfSet("log_last_count_time", "", false, 0), 0);
    }

    static std::string LastCountTime() {
        std::string value;
        EXPECT_EQ(mailConfGet("log_last_count_time", value), 0);
        return value;
    }
};

TEST_F(Statistics, RefusesAPeriodThatIsNone) {
    for (const char* period : {"0", "-1", "1.5", "soon", "9999999999"}) {
        EXPECT_EQ(Program::Run({"statistics", "--period", period}).status, 2) << period;
    }
    EXPECT_EQ(Program::Run({"statistics", "--cycles", "0"}).status, 2);
    EXPECT_FALSE(std::filesystem::exists(kStatistic));
}

TEST_F(Statistics, RunsSoManyCycles) {
    const Program::Result result = Program::Run({"statistics", "--period", "1", "--cycles", "2"});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_NE(LastCountTime(), "");
    EXPECT_THAT(RunOnFile(kStatistic, "SELECT COUNT(*) > 0 FROM log_statistic_hour"),
                ElementsAre("1"));
    EXPECT_TRUE(std::filesystem::exists(kSecurityStatistic));
}

TEST_F(Statistics, StopInTheMiddleOfTheWorkEndsTheSleepBehindIt) {
    const std::string long_term = test::kSpool + "aggr_mail_log_main.db";
    RunOnFile(long_term, statistic_log::MailLogScript());
    test::SetChangeTime(long_term, std::time(nullptr) + 2 * 86400);
    int lock = -1;
    ASSERT_TRUE(pscFileLockByFile(test::kMailLock, 1, &lock));
    Program program({"statistics", "--period", "1000000000"});
    const std::string waiter = "-> FLOCK  ADVISORY  WRITE " + std::to_string(program.pid()) + " ";
    while (test::ReadTextFile("/proc/locks").find(waiter) == std::string::npos) {
        sched_yield();
    }
    EXPECT_EQ(LastCountTime(), "");
    program.Signal(SIGTERM);
    ASSERT_TRUE(pscFileUnlockByFile(lock));
    const Program::Result result = program.Wait();
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_NE(LastCountTime(), "") << "the cycle in hand was finished";
}

TEST_F(Statistics, SaysWhatIsMissing) {
    EXPECT_THAT(Program::Run({"stats"}),
                Ended(1, testing::_, HasSubstr("there are no statistics yet")));
    EXPECT_FALSE(std::filesystem::exists(kStatistic));

    test::WriteTextFile(kStatistic, std::string(4096, 'x'));
    EXPECT_THAT(Program::Run({"stats"}),
                Ended(1, testing::_, HasSubstr("cannot read " + kStatistic)));

    EXPECT_EQ(Program::Run({"stats", "threats", "--scale", "week"}).status, 2);
    EXPECT_EQ(Program::Run({"stats", "--scale", "year"}).status, 2);
}

TEST_F(Statistics, ShowsTraffic) {
    RunOnFile(kStatistic, statistic_log::StatisticScript());
    RunOnFile(kStatistic,
              "INSERT INTO log_statistic_day VALUES(0, 1, 2, 3, 4, 5);"
              "INSERT INTO log_statistic_day VALUES(86400, 60, 0, 0, NULL, 0);"
              "INSERT INTO log_statistic_hour VALUES(3600, 9, 0, 0, 0, 0);"
              "INSERT INTO log_statistic_top5 VALUES(0, 8, 0, 0, 'old@x.org', 1);"
              "INSERT INTO log_statistic_top5 VALUES(86400, 8, 0, 0, 'ann@x.org', 50);"
              "INSERT INTO log_statistic_top5 VALUES(86400, 8, 0, 1, 'bob@x.org', 10);"
              "INSERT INTO log_statistic_top5 VALUES(86400, 8, 0, 2, '--', 0);"
              "INSERT INTO log_statistic_top5 VALUES(86400, 25, 0, 0, 'hour@x.org', 9);");
    EXPECT_EQ(Program::Run({"stats"}, {}, kUtc).output,
              "TIME        SENT  RECEIVED  BOUNCED  RESENT  REJECTED\n"
              "1970-01-01  1     2         3        4       5\n"
              "1970-01-02  60    0         0        0       0\n"
              "\n"
              "TIME        STATUS  NAME       COUNT\n"
              "1970-01-02  sent    ann@x.org  50\n"
              "1970-01-02  sent    bob@x.org  10\n");
    EXPECT_EQ(
        Program::Run({"stats", "traffic", "--scale", "hour", "--format", "csv"}, {}, kUtc).output,
        "kind,time,group,name,count\r\n"
        "count,1970-01-01 01:00:00,sent,,9\r\n"
        "count,1970-01-01 01:00:00,received,,0\r\n"
        "count,1970-01-01 01:00:00,bounced,,0\r\n"
        "count,1970-01-01 01:00:00,resent,,0\r\n"
        "count,1970-01-01 01:00:00,rejected,,0\r\n"
        "top,1970-01-02 00:00:00,sent,hour@x.org,9\r\n");
    EXPECT_EQ(Program::Run({"stats", "--scale", "week", "--format", "json"}).output, "[]\n");
}

TEST_F(Statistics, ShowsThreats) {
    RunOnFile(kSecurityStatistic, statistic_log::SecurityStatisticScript());
    RunOnFile(kSecurityStatistic,
              "INSERT INTO threat_overview_day VALUES(0, 'inbound', 'spam', 7);"
              "INSERT INTO threat_overview_day VALUES(0, 'inbound', 'virus', 8);"
              "INSERT INTO blocked_address_day VALUES(0, 'inbound', 'sender', 'eve@x.org', 15);"
              "INSERT INTO threat_origin_day VALUES(0, 'DE', 'Germany', 'Ulm', 48.4, 10, 3);"
              "INSERT INTO threat_origin_day VALUES(0, 'FR', 'France', '', 46, 2, 4);");
    EXPECT_EQ(Program::Run({"stats", "threats"}, {}, kUtc).output,
              "TIME        MAIL     THREAT  COUNT\n"
              "1970-01-01  inbound  virus   8\n"
              "1970-01-01  inbound  spam    7\n"
              "\n"
              "TIME        MAIL            ADDRESS    COUNT\n"
              "1970-01-01  inbound sender  eve@x.org  15\n"
              "\n"
              "TIME        COUNTRY  PLACE         COUNT\n"
              "1970-01-01  FR       France        4\n"
              "1970-01-01  DE       Germany, Ulm  3\n");
    EXPECT_EQ(Program::Run({"stats", "threats", "--format", "json"}).output,
              R"([
{"count":8,"group":"inbound","kind":"threat","name":"virus","time":0},
{"count":7,"group":"inbound","kind":"threat","name":"spam","time":0},
{"count":15,"group":"inbound sender","kind":"address","name":"eve@x.org","time":0},
{"count":4,"group":"FR","kind":"origin","name":"France","time":0},
{"count":3,"group":"DE","kind":"origin","name":"Germany, Ulm","time":0}
]
)");
}

TEST_F(Statistics, DrawsBarsOnATerminal) {
    setenv("TZ", "UTC0", 1);
    std::ostringstream out;
    serverlog::program::TableWriter::Style style;
    style.with_colours = true;
    serverlog::program::WriteStatisticTables(out,
                                             {{"threat", 0, "inbound", "spam", 200},
                                              {"threat", 0, "inbound", "virus", 31},
                                              {"threat", 0, "inbound", "spf", 1},
                                              {"threat", 0, "inbound", "none", 0}},
                                             "day", style);
    EXPECT_EQ(out.str(),
              "\x1b[1mTIME        MAIL     THREAT  COUNT\x1b[0m\n"
              "1970-01-01  inbound  spam    200    ████████████████████\n"
              "1970-01-01  inbound  virus   31     ███\n"
              "1970-01-01  inbound  spf     1      ▏\n"
              "1970-01-01  inbound  none    0\n");
}

}  // namespace
