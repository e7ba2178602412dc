#include <gmock/gmock.h>
#include <mailserver-log/old_log/maillogger.h>
#include <mailserver/file_lock.h>
#include <mailserver/mail_conf.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "old_log/create_scripts.h"
#include "support/child.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/statistics.h"
#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

namespace fs = std::filesystem;

using statistic_log::TimeScale;
using test::LocalTime;
using test::RunOnFile;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Rows = std::vector<std::string>;

const std::string kMailMain = test::kSpool + "aggr_mail_log_main.db";
const std::string kSecurityMain = test::kSpool + "aggr_security_log_main.db";
const std::string kStatistic = test::kSpool + "log_statistic.db";
const std::string kSecurityStatistic = test::kSpool + "security_statistic.db";
const std::string kGarbage(8192, 'x');

std::size_t OpenDescriptors() {
    return test::FilesIn("/proc/self/fd").size();
}

/// Spoils the pages behind the first, which holds the schema: SQLite finds that out only in use.
void SpoilPages(const std::string& path) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(4096);
    const std::string noise(fs::file_size(path) - 4096, 'x');
    file.write(noise.data(), static_cast<std::streamsize>(noise.size()));
}

class Engine : public testing::Test {
 protected:
    void SetUp() override {
        SKIP_WITHOUT_SECOND_USER();
        test::EmptySpool();
        test::SetZone("UTC");
        fs::remove_all(test::kMailLock);
        fs::remove_all(test::kSecurityLock);
        test::SetDomains({"own.example"});
        now_ = LocalTime("2024-05-07 10:30:00");
        test::BeginAt(now_);
        AddEvents("aggr_mail_log.db", std::vector<test::MailEvent>{{now_, 0, "a", "b"}});
        AddEvents("aggr_security_log.db",
                  std::vector<test::SecurityEvent>{
                      {now_, "reject", "192.0.2.1", "x@far.example", "r@far.example"}});
    }

    /// Both long-term files, which have to be attached.
    static void MakeLongTermFiles() {
        RunOnFile(kMailMain, statistic_log::MailLogScript());
        RunOnFile(kSecurityMain, statistic_log::SecurityLogScript());
    }

    static void MakeFolderOf(const char* lock) {
        fs::remove(lock);
        fs::create_directory(lock);
    }

    long now_ = 0;
};

TEST_F(Engine, FailuresAreToldAndGiveEverythingBack) {
    test::SyslogSocket syslog;
    const Rows kTotalFails = {"Get total num Error"};
    const struct {
        const char* name;
        std::function<void()> spoil;
        Rows lines;  // among the error lines, in this order
    } rows[] = {
        {"nothing", [] {}, {}},
        {"long-term mail log is no database",
         [] { test::WriteTextFile(kMailMain, kGarbage); },
         {"Encounter error when attach databases", "Get total num Error"}},
        {"long-term mail log has no table",
         [] { RunOnFile(kMailMain, "DROP TABLE mail_log_table"); },
         {"sqlite3_prepare_v2: [1] no such table: DB0.mail_log_table\n", "Get total num Error"}},
        {"long-term security log is no database",
         [] { test::WriteTextFile(kSecurityMain, kGarbage); },
         {"Encounter error when attach databases", "Failed to attachLogDBs.[",
          "Get total num Error"}},
        {"long-term security log has no table",
         [] { RunOnFile(kSecurityMain, "DROP TABLE security_log_table"); },
         {"sqlite3_prepare_v2: [1] no such table: DB0.security_log_table\n",
          "Get total num Error"}},
        {"mail lock is a folder",
         [] { MakeFolderOf(test::kMailLock); },
         {"fail to get file lock for mail log database.[0x0015 "
          "platform/linux/mailserver/file_lock.cpp:",
          "Get total num Error"}},
        {"security lock is a folder",
         [] { MakeFolderOf(test::kSecurityLock); },
         {"fail to get file lock for mail log database.[0x0015 ", "Failed to attachLogDBs.[0x0015 ",
          "Get total num Error"}},
        {"statistics are no database",
         [] { test::WriteTextFile(kStatistic, kGarbage); },
         {"Encounter error when attach statistic databases", "Get top 5 list Error"}},
        {"statistics are corrupt",
         [] { SpoilPages(kStatistic); },
         {"db[/var/spool/@PostCube-Server/aggr_log/aggr_mail_log.db] corrupt, need regen",
          "Get top 5 list Error"}},
        {"security statistics are corrupt",
         [] { SpoilPages(kSecurityStatistic); },
         {"db[/var/spool/@PostCube-Server/aggr_log/security_statistic.db] corrupt, need regen"}},
        {"mail log is no database",
         [] { test::WriteTextFile(test::kSpool + "aggr_mail_log.db", kGarbage); }, kTotalFails},
        {"domains cannot be read",
         [] { test::WriteTextFile(test::kDomainFile, "["); },
         {"Failed to load domain list.[0x004A platform/linux/mailserver/domains.cpp:"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SetUp();
        syslog.Take();
        MakeLongTermFiles();
        MailLogger logger(300);
        logger.securityStatistic();
        logger.statistic();
        ASSERT_THAT(syslog.TakeErrors(), Not(Contains(HasSubstr("Error"))));
        const std::size_t descriptors = OpenDescriptors();

        row.spoil();
        logger.securityStatistic();
        logger.statistic();

        const Rows errors = syslog.TakeErrors();
        auto next = errors.begin();
        for (const std::string& line : row.lines) {
            next = std::find_if(next, errors.end(),
                                [&](const std::string& error) { return error.find(line) == 0; });
            EXPECT_NE(next, errors.end())
                << line << " is not in " << testing::PrintToString(errors);
        }
        EXPECT_EQ(errors.empty(), row.lines.empty()) << testing::PrintToString(errors);
        EXPECT_EQ(OpenDescriptors(), descriptors);
        for (const char* lock : {test::kMailLock, test::kSecurityLock}) {
            EXPECT_TRUE(fs::is_directory(lock) || test::IsFree(lock)) << lock;
        }
    }
}

TEST_F(Engine, LongTermFileVanishesBetweenCheckAndAttach) {
    MakeLongTermFiles();
    int lock = -1;
    ASSERT_TRUE(pscFileLockByFile(test::kMailLock, 1, &lock));
    test::Child engine([this] {
        MailLogger logger(300);
        const int count = logger.getLogNumPerHour(now_ - 1800, MailStatus::Sent);
        return std::to_string(count) + (test::IsFree(test::kMailLock) ? " free" : " locked") + " " +
               std::to_string(logger.getLogNumPerHour(now_ - 1800, MailStatus::Sent));
    });
    engine.AwaitWaitForLock();
    fs::remove(kMailMain);
    ASSERT_TRUE(pscFileUnlockByFile(lock));
    EXPECT_EQ(engine.Wait(), "-1 free 1");
    EXPECT_FALSE(fs::exists(kMailMain));
}

TEST_F(Engine, ALogThatStaysBusyIsCountedInALaterCycle) {
    for (const char* name : {"aggr_mail_log.db", "aggr_security_log.db"}) {
        SCOPED_TRACE(name);
        SetUp();
        MailLogger logger(300);
        DBHandler writer(test::kSpool + name, "");
        ASSERT_EQ(writer.connect(), 0);
        ASSERT_EQ(writer.ExecCmd("BEGIN EXCLUSIVE"), 0);
        logger.securityStatistic();
        logger.statistic();
        EXPECT_THAT(test::StatisticRows(), IsEmpty());
        ASSERT_EQ(writer.ExecCmd("COMMIT"), 0);
        EXPECT_EQ(logger.securityStatistic(), 0);
        logger.statistic();
        EXPECT_THAT(RunOnFile(kStatistic, "SELECT sentCnt, rejectCnt FROM log_statistic_hour"),
                    ElementsAre("1|1"));
    }
}

TEST_F(Engine, AttachesALongTermFileOfTheDayOrLater) {
    test::SyslogSocket syslog;
    MailLogger logger(300);
    const test::Table<const char*, const char*, bool> rows = {
        {"the day before", "2024-05-06 23:59:59", false},
        {"at the start of the day", "2024-05-07 00:00:00", false},
        {"later on the day", "2024-05-07 23:59:59", false},
        {"the next day", "2024-05-08 00:00:00", true},
    };
    MakeLongTermFiles();
    for (const auto& [name, changed, attach] : rows) {
        test::SetChangeTime(kMailMain, LocalTime(changed));
        EXPECT_EQ(logger.shouldAttach(kMailMain), attach) << name;
        DBHandler handler(test::kSpool + "aggr_mail_log.db", "");
        EXPECT_EQ(logger.attachLogDBs(&handler, MailStatus::Sent, TimeScale::Hour), attach ? 1 : 0)
            << name;
        EXPECT_EQ(test::IsFree(test::kMailLock), !attach) << name;
        logger.disconnectLogDB(&handler, MailStatus::Sent);
        EXPECT_TRUE(test::IsFree(test::kMailLock)) << name;
    }
    EXPECT_FALSE(logger.shouldAttach("/tmp/missing.db"));
    DBHandler handler("/tmp/any.db", "");
    EXPECT_EQ(logger.attachLogDBs(&handler, MailStatus::Sent, TimeScale::Week), -1);
    EXPECT_EQ(logger.attachDB(&handler, "/tmp/missing.db", "log"), -1);
    EXPECT_THAT(syslog.TakeErrors(),
                ElementsAre("Failed to attach DB, the file does not exist: /tmp/missing.db (log)"));
}

TEST_F(Engine, ErrorsNameTheirDatabase) {
    MailLogger logger(300);
    EXPECT_EQ(logger.error(), 0);
    EXPECT_EQ(logger.HandleError(), -1);
    EXPECT_EQ(logger.error(), -1);
    logger.getLogNumPerHour(now_, MailStatus::Sent);
    EXPECT_EQ(logger.error(), 1);
    logger.getLogNumPerHour(now_, MailStatus::Rejected);
    EXPECT_EQ(logger.HandleError(), 0);
    test::WriteTextFile(kSecurityStatistic, kGarbage);
    EXPECT_EQ(logger.securityStatistic(), -1);
    EXPECT_EQ(logger.error(), -1);
}

TEST_F(Engine, WithoutItsFolderItFailsAndStaysAlive) {
    EXPECT_EQ(test::InChildWithoutRights([this] {
                  MailLogger logger(300);
                  const std::string error = std::to_string(logger.error());
                  logger.statistic();
                  logger.checkArchiveSetting();
                  return error + " " + std::to_string(logger.securityStatistic()) + " " +
                         std::to_string(logger.removeOldLog()) + " " +
                         std::to_string(logger.saveStatistic(now_, {}));
              }),
              "-1 -1 0 -1");
}

TEST_F(Engine, TurnsArchivingOffWhenItsFolderIsGone) {
    const struct {
        const char* name;
        const char* enabled;
        const char* destination;
        const char* role;
        const char* health;
        const char* after;
        Rows lines;
    } rows[] = {
        {"gone", "yes", "/volume1/gone", "single", "yes", "no", {}},
        {"never set", "yes", "", "master", "yes", "no", {}},
        {"there", "yes", "/volume1", "single", "yes", "yes", {}},
        {"another value", "Yes", "/volume1/gone", "single", "yes", "Yes", {}},
        {"may not act", "yes", "/volume1/gone", "member", "yes", "yes", {}},
        {"no role", "yes", "/volume1/gone", "guest", "yes", "yes", {"Can not get node role"}},
        {"ill", "yes", "/volume1/gone", "single", "no", "yes", {"cluster is not health"}},
    };
    test::SyslogSocket syslog;
    test::WriteTextFile("/var/packages/PostCube-Server/etc/notify.d/hook",
                        "#!/bin/sh\n{ echo $1; cat; } >/tmp/notified\n", 0755);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove("/tmp/notified");
        MailLogger logger(300);
        ASSERT_EQ(mailConfSet("archive_enable_schedule", row.enabled, false, 0), 0);
        ASSERT_EQ(mailConfSet("archive_destination", row.destination, false, 0), 0);
        ASSERT_EQ(mailConfSet("cluster_role", row.role, false, 0), 0);
        ASSERT_EQ(mailConfSet("cluster_health", row.health, false, 0), 0);
        syslog.Take();
        logger.checkArchiveSetting();
        EXPECT_EQ(syslog.TakeErrors(), row.lines);
        std::string after;
        ASSERT_EQ(mailConfGet("archive_enable_schedule", after), 0);
        EXPECT_EQ(after, row.after);
        if (after == "no") {
            EXPECT_EQ(test::ReadTextFile("/tmp/notified"),
                      "POSTCUBE_SERVER_ARCHIVE_SHARE_REMOVE\n{\"%SHARED_FOLDER%\":\"" +
                          std::string(row.destination) + "\"}");
        } else {
            EXPECT_FALSE(fs::exists("/tmp/notified"));
        }
    }
}

}  // namespace
