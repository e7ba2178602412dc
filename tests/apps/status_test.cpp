#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/log/rotation/rotater.h>
#include <mailserver/file_lock.h>
#include <mailserver/mail_conf.h>
#include <merodbquery/session.h>

#include <filesystem>
#include <functional>
#include <map>
#include <regex>
#include <string>

#include "support/named_rows.h"
#include "support/program.h"
#include "support/small_volume.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/text_file.h"

namespace {

namespace fs = std::filesystem;
using serverlog::db::AdminLogDB;
using serverlog::db::MailLogDB;
using serverlog::db::Provider;
using test::Program;
using testing::HasSubstr;
using testing::Not;
using Store = serverlog::db::StoreTraits<MailLogDB>;

const std::string kSettings = "/var/packages/PostCube-Server/etc/mailserver.conf";

/// All files of the product with their sizes and times.
std::map<std::string, std::string> Snapshot() {
    std::map<std::string, std::string> files;
    for (const char* folder : {"/volume1", "/var/lock/postcube_server", "/var/packages", "/tmp"}) {
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            const auto time = entry.last_write_time().time_since_epoch().count();
            files[entry.path()] =
                std::to_string(time) + " " +
                (entry.is_regular_file() ? std::to_string(entry.file_size()) : "");
        }
    }
    return files;
}

class Status : public testing::Test {
 protected:
    Status() { Reset(); }

    /// A mail store with a row that stays and one that waits for rotation.
    static void Reset() {
        test::EmptySpool();
        fs::remove_all("/var/lock/postcube_server");
        fs::create_directory("/var/lock/postcube_server");
        fs::remove(kSettings);
        Provider(Store::kPath).Get<MailLogDB>(false);
        test::RunOnFile(Store::kPath, test::InsertRow<MailLogDB>("old", 86400) +
                                          test::InsertRow<MailLogDB>("new", 2000000000));
    }

    /// Runs it, and checks that nothing was changed by that. The columns of the output are one
    /// blank apart.
    static Program::Result Run() {
        const auto before = Snapshot();
        Program::Result result = Program::Run({"status"}, {}, {{"TZ", "UTC"}});
        EXPECT_EQ(Snapshot(), before);
        result.output = std::regex_replace(result.output, std::regex("  +"), " ");
        return result;
    }
};

TEST_F(Status, TellsWhatTheStoresHold) {
    mailConfSet("archive_enable_schedule", "yes", false, 0);
    mailConfSet("archive_destination", "/volume1", false, 0);
    mailConfSet("archive_last_archive_time", "1000000000", false, 0);
    EXPECT_TRUE(serverlog::log::rotation::Rotater<MailLogDB>(Store::kPath).Rotate());
    test::RunOnFile(Store::kPath, test::InsertRow<MailLogDB>("late", 86400));
    test::WriteTextFile(test::kSpool + "aggr_maillog-1", "text");
    const Program::Result result = Run();
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(result.error, "");
    for (const char* text :
         {"admin admin_log.db - - ", "never rotated\n",
          "mail aggr_mail_log.db 2 1970-01-02 00:00:00 2033-05-18 03:33:20 4",
          "mail aggr_mail_log_main.db 1 ", "archive_aggr_mail_log.db 1 ", "\nmail: rotated 2",
          ", rows that wait for rotation: 1\n",
          "archive: on, to /volume1; rows that wait: 1, plain text mail logs: 1; "
          "newest log archived: 2001-09-09 01:46:40\n",
          "\nnothing is wrong\n"}) {
        EXPECT_THAT(result.output, HasSubstr(text));
    }
}

TEST_F(Status, TellsWhatIsWrong) {
    const struct {
        std::string wrong;
        std::string remedy;
        std::function<void()> spoil;
    } rows[] = {
        {"mail: aggr_mail_log.db cannot be read: file is not a database", "move it away",
         [] { test::WriteTextFile(Store::kPath, "no store"); }},
        {"mail: archive_aggr_mail_log.db cannot be read: no such table: mail_log_table", "move it",
         [] { test::WriteTextFile(Store::kArchivePath, ""); }},
        {"mail: aggr_mail_log.db is of version 3", "run mailserver-log upgrade mail",
         [] { test::RunOnFile(Store::kPath, "PRAGMA user_version = 3"); }},
        {"mail: aggr_mail_log.db is of version 9, which this release does not know",
         "newer release", [] { test::RunOnFile(Store::kPath, "PRAGMA user_version = 9"); }},
        {"mail: aggr_mail_log.db lacks 1 of its indices, mail_log_table_size_idx",
         "run mailserver-log rotate mail",
         [] { test::RunOnFile(Store::kPath, "DROP INDEX mail_log_table_size_idx"); }},
        {"mail: tmp_aggr_mail_log.db (8 B) was left", "run mailserver-log rotate mail",
         [] { test::WriteTextFile(Store::kWorkPath, "leftover"); }},
        {"archive: the settings cannot be read", "mend " + kSettings,
         [] { test::WriteTextFile(kSettings, "no setting"); }},
        {"archive: the archive folder is not set", "choose another one",
         [] { mailConfSet("archive_enable_schedule", "yes", false, 0); }},
        {"archive: the archive folder /gone is gone", "choose another one",
         [] {
             mailConfSet("archive_enable_schedule", "yes", false, 0);
             mailConfSet("archive_destination", "/gone", false, 0);
         }},
        {"archive: archiving was turned off, and rows wait for it: 1", "turn it on",
         [] {
             fs::copy_file(Store::kPath, Store::kArchivePath);
             test::RunOnFile(Store::kArchivePath, "DELETE FROM mail_log_table WHERE date > 86400");
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.wrong);
        Reset();
        row.spoil();
        const Program::Result result = Run();
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.output, HasSubstr("\nwrong: " + row.wrong));
        EXPECT_THAT(result.output, HasSubstr(row.remedy));
        EXPECT_THAT(result.error, HasSubstr("1 thing is wrong"));
    }
}

TEST_F(Status, LooksAtFilesInWalMode) {
    const auto in_wal_mode = [](const char* change) {
        test::RunOnFile(Store::kPath, std::string("PRAGMA journal_mode = WAL;") + change);
    };
    in_wal_mode("");
    EXPECT_EQ(Run().status, 0) << "that no process has open";
    merodbquery::Session session = merodbquery::Session::SQLite(Store::kPath);
    EXPECT_TRUE(session.RawQuery(test::InsertRow<MailLogDB>("logged", 1)));
    EXPECT_THAT(Run().output, HasSubstr("aggr_mail_log.db 3 "));
}

TEST_F(Status, TellsWhereAnOperationIsUnderWay) {
    test::WriteTextFile(Store::kWorkPath, "that of the rotation");
    int lock = -1;
    ASSERT_TRUE(pscFileLockByFile(Store::kOperationLock, 1, &lock));
    const Program::Result result = Run();
    EXPECT_TRUE(pscFileUnlockByFile(lock));
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, HasSubstr("upgraded right now\n"));
}

TEST_F(Status, TellsWhenThereIsTooLittleRoomOrNoVolume) {
    const test::SmallVolume volume(test::kSpool);
    SKIP_UNLESS_MOUNTED(volume);
    Reset();
    fs::copy_file(Store::kPath, Store::kMainPath);
    volume.Limit(4096);
    EXPECT_THAT(Run().output, HasSubstr("wrong: mail: to rotate mail takes about "));
    volume.Limit(-1);

    fs::rename("/var/spool/@PostCube-Server", "/var/spool/away");
    fs::create_directories("/var/spool/@PostCube-Server/aggr_log");
    fs::copy_file("/var/spool/away/aggr_log/aggr_mail_log.db", Store::kPath);
    EXPECT_THAT(Run().output, HasSubstr(", not on a volume: it is never rotated"));
    fs::remove_all("/var/spool/@PostCube-Server");
    fs::rename("/var/spool/away", "/var/spool/@PostCube-Server");
}

TEST_F(Status, LooksAtNothing) {
    test::EmptySpool();
    const Program::Result result = Run();
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, HasSubstr("nothing is wrong"));
    EXPECT_THAT(result.output, Not(HasSubstr("rotated 2")));
}

}  // namespace
