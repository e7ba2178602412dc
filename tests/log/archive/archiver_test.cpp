#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/archive/archiver.h>
#include <mailserver-log/log/rotation/rotater.h>
#include <mailserver/mail_conf.h>
#include <merodbquery/session.h>
#include <syslog.h>
#include <utime.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "support/child.h"
#include "support/named_rows.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_reader.h"
#include "support/syslog_socket.h"
#include "support/text_file.h"

namespace serverlog::log::archive {
namespace {

namespace fs = std::filesystem;
using db::AdminLogDB;
using db::MailLogDB;
using db::SecurityLogDB;
using db::StoreTraits;
using merodbquery::Session;
using test::RunOnFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

constexpr ArchiveFlags kAll = 15;
constexpr std::time_t kMarch = 1709380800;  // 2024-03-02 12:00 UTC
constexpr std::time_t kApril = 1712664000;  // 2024-04-09 12:00 UTC
const std::string kNear = "/volume1/shared folder";
const std::string kFar = "/dev/shm/other volume";
const std::string kPlain = test::kSpool + "aggr_maillog";

Lines FilesIn(const std::string& folder) {
    Lines names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void SetTime(const std::string& path, std::time_t time) {
    const utimbuf times = {time, time};
    ASSERT_EQ(utime(path.c_str(), &times), 0) << path;
}

std::string Setting(const std::string& key) {
    std::string value;
    EXPECT_EQ(mailConfGet(key, value), 0);
    return value;
}

class ArchiverTest : public testing::Test {
 protected:
    ArchiverTest() {
        setenv("TZ", "UTC", 1);
        tzset();
        test::EmptySpool();
        fs::remove(kSettings);
        for (const std::string& folder : {kNear, kFar}) {
            fs::remove_all(folder);
            fs::create_directory(folder);
        }
        TurnOn(kNear);
        log_.Take();
    }

    static void TurnOn(const std::string& dest) {
        mailConfSet("archive_enable_schedule", "yes", false, 0);
        mailConfSet("archive_destination", dest, false, 0);
    }

    template <class DB>
    static void Add(const std::string& path, const std::string& name, std::time_t date) {
        db::Provider(path).Get<DB>(false);
        RunOnFile(path, test::InsertRow<DB>(name, date));
    }

    template <class DB>
    static Lines Names(const std::string& path) {
        return RunOnFile(path, test::SelectNames<DB>());
    }

    /// A store with rows of two days that rotation has moved, and one that it has not.
    template <class DB>
    static void MakeRotated() {
        const std::string path = StoreTraits<DB>::kPath;
        Add<DB>(path, "march", kMarch);
        Add<DB>(path, "april", kApril);
        Add<DB>(path, "today", std::time(nullptr));
        EXPECT_TRUE(rotation::Rotater<DB>(path).Rotate());
    }

    static inline const std::string kSettings = "/var/packages/PostCube-Server/etc/mailserver.conf";
    test::SyslogSocket log_;
};

template <class DB>
void ExpectHandedOver(const std::string& dest, const std::string& name) {
    SCOPED_TRACE(dest + " " + name);
    const std::string moved = dest + "/20240302_20240409_archive_" + name;
    EXPECT_THAT(RunOnFile(dest + "/" + name, test::SelectNames<DB>()), ElementsAre("today"));
    EXPECT_THAT(RunOnFile(moved, test::SelectNames<DB>()), ElementsAre("april", "march"));
    const std::string indices = "SELECT name FROM sqlite_schema WHERE type='index' ORDER BY 1";
    EXPECT_EQ(RunOnFile(moved, indices), RunOnFile(StoreTraits<DB>::kPath, indices));
    EXPECT_FALSE(fs::exists(StoreTraits<DB>::kArchivePath));
}

TEST_F(ArchiverTest, HandsOverAllStores) {
    for (const std::string& dest : {kNear, kFar}) {
        TurnOn(dest);
        test::EmptySpool();
        MakeRotated<AdminLogDB>();
        MakeRotated<MailLogDB>();
        MakeRotated<SecurityLogDB>();
        const std::size_t stored = FilesIn(test::kSpool).size();
        EXPECT_TRUE(Archiver(kAll).Archive());
        ExpectHandedOver<AdminLogDB>(dest, "admin_log.db");
        ExpectHandedOver<MailLogDB>(dest, "aggr_mail_log.db");
        ExpectHandedOver<SecurityLogDB>(dest, "aggr_security_log.db");
        EXPECT_EQ(FilesIn(dest).size(), 6U);
        EXPECT_EQ(FilesIn(test::kSpool).size(), stored - 3);
    }
    EXPECT_THAT(log_.TakeErrors(), IsEmpty());
}

TEST_F(ArchiverTest, BeginsANewArchiveFileEachTimeInOneProcess) {
    for (const std::string& dest : {kNear, kFar}) {
        TurnOn(dest);
        for (int round = 0; round < 3; ++round) {
            const std::time_t day = kMarch + round * 86400;
            Add<MailLogDB>(StoreTraits<MailLogDB>::kPath, std::to_string(round), day);
            EXPECT_TRUE(rotation::Rotater<MailLogDB>(StoreTraits<MailLogDB>::kPath).Rotate());
            EXPECT_TRUE(Archiver(kArchiveMailLog).Archive());
            EXPECT_TRUE(Archiver(kArchiveMailLog).Archive()) << "nothing is left to move";
            const std::string name = "2024030" + std::to_string(2 + round) + "_";
            const std::string path = dest + "/" + name + name + "archive_aggr_mail_log.db";
            EXPECT_THAT(Names<MailLogDB>(path), ElementsAre(std::to_string(round)));
        }
        EXPECT_EQ(FilesIn(dest).size(), 4U);
    }
    EXPECT_THAT(log_.TakeErrors(), IsEmpty());
}

TEST_F(ArchiverTest, LeavesWhatIsNotThereOrEmpty) {
    EXPECT_TRUE(Archiver(kAll).Archive());
    EXPECT_THAT(FilesIn(kNear), IsEmpty());
    db::Provider(StoreTraits<MailLogDB>::kArchivePath).Get<MailLogDB>(false);
    EXPECT_TRUE(Archiver(kAll).Archive());
    EXPECT_THAT(FilesIn(kNear), IsEmpty());
    EXPECT_TRUE(fs::exists(StoreTraits<MailLogDB>::kArchivePath));
    EXPECT_THAT(log_.TakeErrors(), IsEmpty());
}

TEST_F(ArchiverTest, TakesWhatTheFlagsNameAndNoOtherLock) {
    for (const auto& [flags, file] : std::vector<std::pair<ArchiveFlags, std::string>>{
             {kArchiveAdminLog, "admin_log.db"},
             {kArchiveMailLog, "aggr_mail_log.db"},
             {kArchiveSecurityLog, "aggr_security_log.db"},
             {kArchivePlainMailLogs, "aggr_maillog"},
             {0, ""}}) {
        db::Provider(StoreTraits<AdminLogDB>::kPath).Get<AdminLogDB>(false);
        db::Provider(StoreTraits<MailLogDB>::kPath).Get<MailLogDB>(false);
        db::Provider(StoreTraits<SecurityLogDB>::kPath).Get<SecurityLogDB>(false);
        test::WriteTextFile(kPlain, "line\n");
        fs::remove_all("/var/lock/postcube_server");
        fs::remove_all(kNear);
        fs::create_directory(kNear);
        EXPECT_TRUE(Archiver(flags).Archive());
        EXPECT_EQ(FilesIn(kNear), file.empty() ? Lines() : Lines{file});
        EXPECT_EQ(fs::exists("/var/lock/postcube_server"), flags != 0 && file != "aggr_maillog");
    }
}

TEST_F(ArchiverTest, DoesNothingWhileItIsOff) {
    Add<MailLogDB>(StoreTraits<MailLogDB>::kPath, "a", 1);
    for (const char* value : {"no", "Yes", ""}) {
        mailConfSet("archive_enable_schedule", value, false, 0);
        mailConfSet("archive_destination", "/no folder", false, 0);
        EXPECT_FALSE(Archiver(kAll).IsEnabled());
        EXPECT_TRUE(Archiver(kAll).Archive());
    }
    EXPECT_THAT(log_.TakeErrors(), IsEmpty());
}

TEST_F(ArchiverTest, TellsTheAdministratorWhenTheFolderIsGone) {
    const std::string hooks = "/var/packages/PostCube-Server/etc/notify.d/";
    fs::create_directories(hooks);
    test::WriteTextFile(hooks + "note", "#!/bin/sh\n{ echo $1; cat; } >/tmp/noted\n", 0755);
    const std::string noted =
        "POSTCUBE_SERVER_ARCHIVE_SHARE_REMOVE\n{\"%SHARED_FOLDER%\":\"/volume1/gone folder\"}";
    const struct {
        const char* name;
        const char* dest;
        const char* role;
        const char* health;
        std::string error;
        std::string noted;
    } rows[] = {
        {"gone", "/volume1/gone folder", "single", "yes",
         "Prepare archive environment fail, not valid archive path", noted},
        {"a file", "/etc/passwd", "master", "yes",
         "Prepare archive environment fail, not valid archive path",
         "POSTCUBE_SERVER_ARCHIVE_SHARE_REMOVE\n{\"%SHARED_FOLDER%\":\"/etc/passwd\"}"},
        {"empty", "", "", "", "Prepare archive environment fail, not valid archive path",
         "POSTCUBE_SERVER_ARCHIVE_SHARE_REMOVE\n{\"%SHARED_FOLDER%\":\"\"}"},
        {"not this machine", "/gone", "member", "yes",
         "Archive cluster operation fail, cluster is not ready for archive", ""},
        {"ill cluster", "/gone", "single", "no",
         "Archive cluster operation fail, cluster is not ready for archive", ""},
        {"unknown role", "/gone", "king", "yes",
         "Archive cluster operation fail, get cluster role fail", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TurnOn(row.dest);
        mailConfSet("cluster_role", row.role, false, 0);
        mailConfSet("cluster_health", row.health, false, 0);
        test::WriteTextFile("/tmp/noted", "nothing");
        log_.Take();
        EXPECT_FALSE(Archiver(kAll).Archive());
        EXPECT_THAT(log_.TakeErrors(), ElementsAre(row.error));
        EXPECT_EQ(test::ReadTextFile("/tmp/noted"), row.noted.empty() ? "nothing" : row.noted);
        EXPECT_EQ(Setting("archive_enable_schedule"), row.noted.empty() ? "yes" : "no");
    }
    fs::remove(hooks + "note");
}

TEST_F(ArchiverTest, FailsWhereTheSettingsCantBeRead) {
    test::WriteTextFile(kSettings, "no setting");
    EXPECT_FALSE(Archiver(kAll).Archive());
    EXPECT_THAT(log_.TakeErrors(),
                ElementsAre("Prepare archive environment fail, get user settings fail"));
}

TEST_F(ArchiverTest, ReplacesOlderFilesOnly) {
    MakeRotated<MailLogDB>();
    const std::string current = kNear + "/aggr_mail_log.db";
    const std::string moved = kNear + "/20240302_20240409_archive_aggr_mail_log.db";
    test::WriteTextFile(current, "older");
    SetTime(current, 1000);
    test::WriteTextFile(current + "-wal", "of the older one");
    test::WriteTextFile(moved, "younger");
    SetTime(moved, std::time(nullptr) + 1000);
    test::WriteTextFile(moved + "-wal", "of the younger one");
    EXPECT_TRUE(Archiver(kArchiveMailLog).Archive());
    EXPECT_THAT(Names<MailLogDB>(current), ElementsAre("today"));
    EXPECT_FALSE(fs::exists(current + "-wal")) << "it would go for the log of the new file";
    EXPECT_EQ(test::ReadTextFile(moved), "younger");
    EXPECT_TRUE(fs::exists(moved + "-wal"));
    EXPECT_EQ(Names<MailLogDB>(StoreTraits<MailLogDB>::kArchivePath).size(), 2U) << "it stays";
    EXPECT_THAT(log_.TakeErrors(), IsEmpty());
}

TEST_F(ArchiverTest, GoesToAFolderBehindALink) {
    fs::remove("/tmp/link to it");
    fs::create_directory_symlink(kNear, "/tmp/link to it");
    MakeRotated<MailLogDB>();
    TurnOn("/tmp/link to it");
    EXPECT_TRUE(Archiver(kArchiveMailLog).Archive());
    EXPECT_EQ(FilesIn(kNear).size(), 2U);
}

TEST_F(ArchiverTest, KeepsAllWhereTheFolderVanished) {
    MakeRotated<AdminLogDB>();
    MakeRotated<MailLogDB>();
    test::WriteTextFile(kPlain, "line\n");
    fs::remove_all(kNear);
    log_.Take();
    EXPECT_FALSE(Archiver(kAll).CopyDb(kNear));
    const Lines errors = log_.TakeErrors();
    const auto told = [&](const std::string& text) {
        return std::count_if(errors.begin(), errors.end(), [&](const std::string& line) {
            return line.find(text) != std::string::npos;
        });
    };
    EXPECT_EQ(told("Copy file fail: Failed to CopyFile, "), 3) << "two stores and the plain log";
    EXPECT_EQ(told("Copy file fail: Rename failed, "), 2) << "two archive files";
    EXPECT_EQ(Names<AdminLogDB>(StoreTraits<AdminLogDB>::kArchivePath).size(), 2U);
    EXPECT_EQ(Names<MailLogDB>(StoreTraits<MailLogDB>::kArchivePath).size(), 2U);
}

TEST_F(ArchiverTest, StopsAtAnArchiveFileThatItCantOpenOrName) {
    Add<AdminLogDB>(StoreTraits<AdminLogDB>::kArchivePath, "without a date", 0);
    Add<MailLogDB>(StoreTraits<MailLogDB>::kPath, "a", 1);
    log_.Take();
    EXPECT_FALSE(Archiver(kAll).Archive());
    EXPECT_THAT(log_.TakeErrors(), ElementsAre("Archive copy fail, prepare archive name fail"));
    EXPECT_THAT(FilesIn(kNear), IsEmpty());
    test::WriteTextFile(StoreTraits<AdminLogDB>::kArchivePath, "SQLite format 3 or so");
    EXPECT_FALSE(Archiver(kAll).Archive());
    EXPECT_THAT(log_.TakeErrors().back(), HasSubstr("DB upgrade failed, path from:"));
    EXPECT_THAT(FilesIn(kNear), IsEmpty());
}

TEST_F(ArchiverTest, CopiesAnUnreadableStoreAsItStands) {
    const std::string path = StoreTraits<MailLogDB>::kPath;
    for (const char* suffix : {"", "-wal", "-shm"}) {
        test::WriteTextFile(path + suffix, std::string("broken") + suffix);
    }
    EXPECT_TRUE(Archiver(kArchiveMailLog).Archive());
    for (const char* suffix : {"", "-wal", "-shm"}) {
        EXPECT_EQ(test::ReadTextFile(kNear + "/aggr_mail_log.db" + suffix),
                  std::string("broken") + suffix);
    }
}

// Rows that are in a write-ahead log alone, of files that a reader keeps open.
TEST_F(ArchiverTest, LosesNoRowOfAWriteAheadLog) {
    const std::string query = test::SelectNames<AdminLogDB>();
    for (const std::string& dest : {kNear, kFar}) {
        SCOPED_TRACE(dest);
        TurnOn(dest);
        test::EmptySpool();
        const std::string paths[] = {StoreTraits<AdminLogDB>::kPath,
                                     StoreTraits<AdminLogDB>::kArchivePath};
        for (const std::string& path : paths) {
            Add<AdminLogDB>(path, "march", kMarch);
            RunOnFile(path, "PRAGMA journal_mode = WAL");
        }
        // While a session is open, what others write stays in the log.
        Session session = Session::SQLite(paths[1]);
        EXPECT_TRUE(session.RawQuery(query));
        test::StoreReader current(paths[0], query);
        for (const std::string& path : paths) {
            Add<AdminLogDB>(path, "logged", kApril);
            EXPECT_GT(fs::file_size(path + "-wal"), 0U);
        }
        test::StoreReader archive(paths[1], query);
        EXPECT_TRUE(Archiver(kArchiveAdminLog).Archive());
        EXPECT_EQ(current.Finish(), "read");
        EXPECT_EQ(archive.Finish(), "read");
        EXPECT_THAT(Names<AdminLogDB>(dest + "/admin_log.db"), ElementsAre("logged", "march"));
        EXPECT_THAT(Names<AdminLogDB>(dest + "/20240302_20240409_archive_admin_log.db"),
                    ElementsAre("logged", "march"));
        EXPECT_FALSE(fs::exists(StoreTraits<AdminLogDB>::kArchivePath + std::string("-wal")));
    }
}

TEST_F(ArchiverTest, CopiesAreWholeWhileRowsAreWritten) {
    const std::string path = StoreTraits<MailLogDB>::kPath;
    for (const char* mode : {"DELETE", "WAL"}) {
        test::EmptySpool();
        Add<MailLogDB>(path, "first", kMarch);
        RunOnFile(path, std::string("PRAGMA journal_mode = ") + mode);
        test::Child writer([&path]() -> std::string {
            Session session = Session::SQLite(path);
            // Each transaction changes pages all over the file.
            for (int i = 0; true; ++i) {
                session.RawQuery("BEGIN IMMEDIATE");
                session.RawQuery("UPDATE mail_log_table SET queue_id = " + std::to_string(i));
                for (int row = 0; row < 50; ++row) {
                    session.RawQuery(test::InsertRow<MailLogDB>(std::string(100, 'x'), kMarch));
                }
                session.RawQuery("COMMIT");
                // Who waits for SQLite's lock does not queue up: it would never get it.
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        });
        for (int i = 0; i < 10; ++i) {
            ASSERT_TRUE(Archiver(kArchiveMailLog).Archive());
            const std::string copy = kNear + "/aggr_mail_log.db";
            ASSERT_THAT(RunOnFile(copy,
                                  "PRAGMA quick_check; SELECT COUNT(DISTINCT queue_id) <= 2"
                                  " FROM mail_log_table"),
                        ElementsAre("ok", "1"))
                << mode << " " << i;
        }
    }
}

TEST_F(ArchiverTest, NamesTheDays) {
    EXPECT_EQ(Archiver(0).GetNewNamePrefix(kMarch, kApril), "20240302_20240409_");
    for (const auto& [oldest, latest] : {std::pair{0L, 1L}, {1L, 0L}}) {
        try {
            Archiver(0).GetNewNamePrefix(oldest, latest);
            ADD_FAILURE();
        } catch (const Exception<ETag::Archive>& error) {
            EXPECT_EQ(error.code(), ArchiveError::CopyFail);
        }
    }
}

TEST_F(ArchiverTest, CopiesPlainMailLogsSinceTheLastTime) {
    const std::time_t now = std::time(nullptr);
    const struct {
        const char* name;
        std::string last;
        Lines copied;
        std::string noted;
        Lines errors;
    } rows[] = {
        {"the first time",
         "",
         {"aggr_maillog", "aggr_maillog-2", "aggr_maillog-3"},
         std::to_string(now - 10),
         {}},
        {"a file of exactly that time stays",
         std::to_string(now - 100),
         {"aggr_maillog", "aggr_maillog-3"},
         std::to_string(now - 10),
         {}},
        {"none is new", std::to_string(now), {"aggr_maillog"}, std::to_string(now), {}},
        {"no time", "x", {"aggr_maillog"}, "x", {"Get last archive time fail"}},
    };
    test::WriteTextFile(kPlain, "now");
    for (const auto& [number, age] : {std::pair{1, 700000}, {2, 100}, {3, 10}}) {
        test::WriteTextFile(kPlain + "-" + std::to_string(number), "old");
        SetTime(kPlain + "-" + std::to_string(number), now - age);
    }
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove_all(kFar);
        fs::create_directory(kFar);
        TurnOn(kFar);
        mailConfSet("archive_last_archive_time", row.last, false, 0);
        log_.Take();
        EXPECT_EQ(Archiver(kArchivePlainMailLogs).Archive(), row.errors.empty());
        EXPECT_EQ(FilesIn(kFar), row.copied);
        EXPECT_EQ(Setting("archive_last_archive_time"), row.noted);
        if (!row.errors.empty()) {
            EXPECT_THAT(log_.TakeErrors(),
                        ElementsAre(row.errors[0], "Archive copy fail, Copy archive db fail"));
        }
    }
}

TEST_F(ArchiverTest, PlainMailLogsThatCantBeCopiedAreTriedAgain) {
    test::WriteTextFile(kPlain + "-1", "text");
    fs::create_directory(kNear + "/aggr_maillog-1");
    SetTime(kNear + "/aggr_maillog-1", 1000);
    EXPECT_FALSE(Archiver(kArchivePlainMailLogs).Archive());
    EXPECT_THAT(log_.TakeErrors(), ElementsAre(HasSubstr("Failed to CopyFile, "),
                                               "Copy archived plain text maillog fail",
                                               "Archive copy fail, Copy archive db fail"));
    EXPECT_EQ(Setting("archive_last_archive_time"), "");
    fs::remove(kNear + "/aggr_maillog-1");
    EXPECT_TRUE(Archiver(kArchivePlainMailLogs).Archive());
    EXPECT_EQ(test::ReadTextFile(kNear + "/aggr_maillog-1"), "text");
}

}  // namespace
}  // namespace serverlog::log::archive
