#include "schedule/archive_schedule.h"

#include <gtest/gtest.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver/mail_conf.h>

#include <filesystem>

#include "process/failure.h"
#include "schedule/archive_stamp.h"
#include "support/program.h"
#include "support/spool.h"
#include "support/table.h"
#include "support/text_file.h"
#include "support/time_zone.h"

namespace {

namespace fs = std::filesystem;
namespace archive_stamp = serverlog::program::archive_stamp;
using serverlog::program::Failure;
using serverlog::program::LatestArchiveTime;
using serverlog::program::ReadArchiveSchedule;
using test::Program;

void Set(const std::string& days, const std::string& hour, const std::string& minute) {
    mailConfSet("archive_weekday", days, false, 0);
    mailConfSet("archive_hour", hour, false, 0);
    mailConfSet("archive_minute", minute, false, 0);
}

TEST(ArchiveSchedule, FindsTheLatestTime) {
    test::SetZone("Europe/Berlin");
    const test::Table<const char*, const char*, const char*, const char*, const char*> rows = {
        {"", "", "", "2024-03-13 03:59:00", "2024-03-12 04:00:00"},
        {"", "", "", "2024-03-13 04:00:00", "2024-03-13 04:00:00"},
        {"0,6", "23", "30", "2024-03-13 12:00:00", "2024-03-10 23:30:00"},
        {"3", "13", "5", "2024-03-13 12:00:00", "2024-03-06 13:05:00"},  // a Wednesday
        {"3", "11", "0", "2024-03-13 12:00:00", "2024-03-13 11:00:00"},
        {"1", "0", "0", "2024-01-01 00:10:00", "2024-01-01 00:00:00"},
        {"0", "4", "0", "2024-04-01 12:00:00", "2024-03-31 04:00:00"},  // behind a day of 23 hours
    };
    for (const auto& [days, hour, minute, now, latest] : rows) {
        Set(days, hour, minute);
        EXPECT_EQ(LatestArchiveTime(ReadArchiveSchedule(), test::LocalTime(now)),
                  test::LocalTime(latest))
            << days << " " << now;
    }
}

TEST(ArchiveSchedule, RefusesSettingsThatMakeNoSense) {
    const test::Table<const char*, const char*, const char*> rows = {
        {"7", "", ""}, {"1;2", "", ""}, {"", "24", ""}, {"", "", "60"}, {"", "x", ""}};
    for (const auto& [days, hour, minute] : rows) {
        Set(days, hour, minute);
        EXPECT_THROW(ReadArchiveSchedule(), Failure) << days << hour << minute;
    }
}

class ArchiveIfDue : public testing::Test {
 protected:
    ArchiveIfDue() {
        test::EmptySpool();
        fs::create_directories("/volume1/archive");
        mailConfSet("archive_destination", "/volume1/archive", false, 0);
        mailConfSet("archive_enable_schedule", "yes", false, 0);
        Set("", "", "");
    }

    static Program::Result Run() { return Program::Run({"archive", "plain", "--if-due"}); }
};

constexpr int kTwoDays = 2 * 86400;

TEST_F(ArchiveIfDue, WaitsForTheFirstTimeAfterArchivingWasTurnedOn) {
    EXPECT_EQ(Run().output, "not due\n") << "never ran";
    mailConfSet("archive_enable_schedule", "no", false, 0);
    archive_stamp::Write(std::time(nullptr) - kTwoDays);
    EXPECT_EQ(Run().output, "not due\n") << "off";
    mailConfSet("archive_enable_schedule", "yes", false, 0);
    EXPECT_EQ(Run().output, "not due\n") << "turned on";
    archive_stamp::Write(std::time(nullptr) + kTwoDays);
    EXPECT_EQ(Run().output, "not due\n") << "the clock was set back";
    EXPECT_LE(*archive_stamp::Read(), std::time(nullptr));
}

TEST_F(ArchiveIfDue, RunsOnceForATimeThatWasMissedAndAgainAfterAFailure) {
    test::WriteTextFile(test::kSpool + "aggr_maillog-1", "log");
    const std::string in_the_way = "/volume1/archive/aggr_maillog-1/file";
    fs::create_directories(in_the_way);
    archive_stamp::Write(std::time(nullptr) - kTwoDays);
    EXPECT_EQ(Run().output, "failed\n");
    EXPECT_EQ(Run().status, 1);
    fs::remove_all(fs::path(in_the_way).parent_path());
    EXPECT_EQ(Run().output, "archived\n");
    EXPECT_EQ(Run().output, "not due\n");
}

}  // namespace
