#include "schedule/rotation_schedule.h"

#include <gtest/gtest.h>
#include <mailserver-log/db/provider.h>
#include <mailserver/mail_conf.h>

#include <ctime>
#include <filesystem>

#include "process/failure.h"
#include "stores/stores.h"
#include "support/named_rows.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/table.h"
#include "support/text_file.h"
#include "support/time_zone.h"

namespace {

using serverlog::program::AdminStore;
using serverlog::program::Failure;
using serverlog::program::IsRotationDue;
using serverlog::program::ReadRotationSchedule;
using serverlog::program::RotationSchedule;

const std::string kStore = AdminStore::kPath;
const auto kFacts = serverlog::program::FactsOf<AdminStore>();

// Wednesday, the 13th of March 2024, noon
constexpr std::time_t kNow = 1710327600;
constexpr int kHour = 3600;
constexpr int kDay = 24 * kHour;

void Set(const std::string& enabled, const std::string& period, const std::string& size) {
    mailConfSet("enable_rotate_period", enabled, false, 0);
    mailConfSet("log_rotate_period", period, false, 0);
    mailConfSet("log_rotate_size", size, false, 0);
}

class RotationScheduleTest : public testing::Test {
 protected:
    RotationScheduleTest() {
        test::SetZone("Europe/Berlin");
        test::EmptySpool();
        serverlog::db::Provider(kStore).Get<serverlog::db::AdminLogDB>(false);
    }

    static void Insert(std::time_t date) {
        test::RunOnFile(kStore, test::InsertRow<serverlog::db::AdminLogDB>("row", date));
    }

    static bool IsDue() { return IsRotationDue(ReadRotationSchedule(), kFacts, kNow); }
};

TEST_F(RotationScheduleTest, RotatesRowsOfPastPeriods) {
    const test::Table<const char*, const char*, const char*, std::time_t, bool> rows = {
        {"yesterday, nothing set", "", "", kNow - 13 * kHour, true},
        {"today, nothing set", "", "", kNow - 12 * kHour, false},
        {"yesterday, period off", "no", "monthly", kNow - kDay, true},
        {"yesterday, no period", "yes", "", kNow - kDay, true},
        {"yesterday, daily", "yes", "daily", kNow - kDay, true},
        {"Monday, weekly", "yes", "weekly", kNow - 2 * kDay - 12 * kHour, false},
        {"Sunday, weekly", "yes", "weekly", kNow - 2 * kDay - 13 * kHour, true},
        {"the 1st, monthly", "yes", "monthly", kNow - 12 * kDay - 12 * kHour, false},
        {"the month before, monthly", "yes", "monthly", kNow - 12 * kDay - 13 * kHour, true},
    };
    for (const auto& [what, enabled, period, oldest, due] : rows) {
        Set(enabled, period, "");
        test::RunOnFile(kStore, "DELETE FROM admin_log");
        Insert(oldest);
        Insert(kNow);
        EXPECT_EQ(IsDue(), due) << what;
    }
}

TEST_F(RotationScheduleTest, RotatesAStoreThatHasGrownUnlessAllIsOfToday) {
    Set("yes", "monthly", "1");
    Insert(kNow - kDay);
    EXPECT_FALSE(IsDue());
    test::RunOnFile(kStore, "UPDATE admin_log SET webapi_param = zeroblob(1 << 20)");
    EXPECT_TRUE(IsDue());
    Set("yes", "monthly", "2");
    EXPECT_FALSE(IsDue());
    Set("yes", "monthly", "1");
    test::RunOnFile(kStore, "UPDATE admin_log SET date = " + std::to_string(kNow));
    EXPECT_FALSE(IsDue());
    // The file stays as large as it was, but holds little now.
    test::RunOnFile(
        kStore, "UPDATE admin_log SET webapi_param = '', date = date - " + std::to_string(kDay));
    EXPECT_FALSE(IsDue());
}

TEST_F(RotationScheduleTest, LeavesToTheRotationWhatIsWrongWithAStore) {
    Set("", "", "");
    EXPECT_FALSE(IsDue()) << "no rows";
    test::EmptySpool();
    EXPECT_FALSE(IsDue()) << "no store";
    test::WriteTextFile(kStore, "no store");
    EXPECT_TRUE(IsDue()) << "broken";
}

TEST_F(RotationScheduleTest, RefusesSettingsThatMakeNoSense) {
    const test::Table<const char*, const char*> rows = {
        {"yearly", ""}, {"daily", "large"}, {"daily", "-1"}, {"daily", "10M"}};
    for (const auto& [period, size] : rows) {
        Set("yes", period, size);
        EXPECT_THROW(ReadRotationSchedule(), Failure) << period << " " << size;
    }
    test::WriteTextFile("/var/packages/PostCube-Server/etc/mailserver.conf", "broken");
    EXPECT_THROW(ReadRotationSchedule(), Failure);
    std::filesystem::remove("/var/packages/PostCube-Server/etc/mailserver.conf");
}

}  // namespace
