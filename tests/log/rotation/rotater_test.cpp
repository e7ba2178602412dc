#include <gmock/gmock.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/rotation/rotater.h>
#include <mailserver/file_lock.h>
#include <mailserver/mail_conf.h>
#include <mailserver/round_time.h>
#include <merodbquery/session.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/named_rows.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"
#include "utils/strings.h"

namespace serverlog::log::rotation {
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

constexpr char kEnabled[] = "archive_enable_schedule";

const std::time_t kCut = getRoundTime(std::time(nullptr), CountInterval::Day);

Lines Files() {
    return test::FilesIn(test::kSpool);
}

std::string OwnerAndMode(const std::string& path) {
    struct stat status = {};
    stat(path.c_str(), &status);
    return std::to_string(status.st_uid) + " " + std::to_string(status.st_mode & 07777U);
}

template <class DB>
class RotaterTest : public testing::Test {
 protected:
    using Traits = StoreTraits<DB>;

    RotaterTest() {
        test::EmptySpool();
        mailConfSet(kEnabled, "no", false, 0);
        db::Provider(Traits::kPath).Get<DB>(false);
        log_.Take();
    }

    static void Add(const std::string& path, const std::string& name, std::time_t date) {
        RunOnFile(path, test::InsertRow<DB>(name, date));
    }

    static Lines Names(const std::string& path) { return RunOnFile(path, test::SelectNames<DB>()); }

    static bool Rotate() { return Rotater<DB>(Traits::kPath).Rotate(); }

    static std::string FileName(const char* path) { return fs::path(path).filename().string(); }

    static Lines Indices(const std::string& path) {
        return RunOnFile(path,
                         "SELECT name FROM sqlite_schema WHERE type = 'index' ORDER BY name;");
    }

    test::SyslogSocket log_;
};

using Stores = testing::Types<AdminLogDB, MailLogDB, SecurityLogDB>;
TYPED_TEST_SUITE(RotaterTest, Stores, );

TYPED_TEST(RotaterTest, MovesWhatIsOlderThanTodayThriceInOneProcess) {
    using Store = StoreTraits<TypeParam>;
    const Lines indices = this->Indices(Store::kPath);
    Lines moved;
    for (const char* round : {"1", "2", "3"}) {
        SCOPED_TRACE(round);
        this->Add(Store::kPath, round + std::string(" old"), 1);
        this->Add(Store::kPath, round + std::string(" yesterday"), kCut - 1);
        this->Add(Store::kPath, round + std::string(" today"), kCut);
        EXPECT_TRUE(this->Rotate());
        moved.insert(moved.end(), {round + std::string(" old"), round + std::string(" yesterday")});
        EXPECT_EQ(this->Names(Store::kMainPath), moved);
        EXPECT_THAT(this->Names(Store::kPath), testing::Each(HasSubstr("today")));
        EXPECT_EQ(this->Names(Store::kPath).size(), std::stoul(round));
    }
    for (const char* path : {Store::kPath, Store::kMainPath}) {
        EXPECT_EQ(this->Indices(path), indices);
        EXPECT_THAT(RunOnFile(path, "PRAGMA journal_mode; PRAGMA user_version; PRAGMA quick_check"),
                    ElementsAre("delete", "4", "ok"));
    }
    EXPECT_THAT(Files(),
                ElementsAre(this->FileName(Store::kPath), this->FileName(Store::kMainPath)));
    EXPECT_EQ(OwnerAndMode(Store::kMainPath), "8025 " + std::to_string(0644));
    EXPECT_STREQ(getenv("SQLITE_TMPDIR"), "/var/spool/@PostCube-Server/aggr_log/");
    EXPECT_THAT(this->log_.TakeErrors(), IsEmpty());
}

TYPED_TEST(RotaterTest, GathersRowsForTheArchiveOnlyWhileThatIsOn) {
    using Store = StoreTraits<TypeParam>;
    this->Add(Store::kPath, "a", 1);
    mailConfSet(kEnabled, "Yes", false, 0);
    EXPECT_TRUE(this->Rotate());
    EXPECT_FALSE(fs::exists(Store::kArchivePath));

    mailConfSet(kEnabled, "yes", false, 0);
    for (const char* name : {"b", "c"}) {
        this->Add(Store::kPath, name, 1);
        this->Add(Store::kPath, "today", kCut);
        EXPECT_TRUE(this->Rotate());
    }
    EXPECT_THAT(this->Names(Store::kArchivePath), ElementsAre("b", "c"));
    EXPECT_THAT(this->Names(Store::kMainPath), ElementsAre("a", "b", "c"));
    EXPECT_THAT(this->Indices(Store::kArchivePath), ElementsAre(HasSubstr("date_idx")));
    EXPECT_EQ(OwnerAndMode(Store::kArchivePath), "8025 " + std::to_string(0644));
    EXPECT_EQ(Files().size(), 3U);
    EXPECT_THAT(this->log_.TakeErrors(), IsEmpty());
}

TYPED_TEST(RotaterTest, MovesAndGathersWholeRows) {
    using Store = StoreTraits<TypeParam>;
    const std::string table = test::RowsOf<TypeParam>::kTable;
    this->Add(Store::kPath, "old", 1);
    for (const std::string& column :
         RunOnFile(Store::kPath, "SELECT name FROM pragma_table_info('" + table + "')")) {
        RunOnFile(Store::kPath, "UPDATE " + table + " SET " + column + " = 'of " + column +
                                    "' WHERE coalesce(" + column + ", '') = ''");
    }
    const Lines rows = RunOnFile(Store::kPath, "SELECT * FROM " + table);
    mailConfSet(kEnabled, "yes", false, 0);
    EXPECT_TRUE(this->Rotate());
    EXPECT_EQ(RunOnFile(Store::kMainPath, "SELECT * FROM " + table), rows);
    EXPECT_EQ(RunOnFile(Store::kArchivePath, "SELECT * FROM " + table), rows);
}

TYPED_TEST(RotaterTest, GoesOnWhereAFailedRunBrokeOff) {
    using Store = StoreTraits<TypeParam>;
    const std::string work = test::kSpool + "tmp_" + this->FileName(Store::kPath);
    this->Add(Store::kPath, "old", 1);
    for (const char* suffix : {"", "-journal", "-wal", "-shm", ".part"}) {
        test::WriteTextFile(work + suffix, "left over");
    }
    EXPECT_TRUE(this->Rotate());
    EXPECT_THAT(this->Names(Store::kMainPath), ElementsAre("old"));
    EXPECT_EQ(Files().size(), 2U);

    // A script that fails behind its ATTACH leaves that in the session that the process shares.
    this->Add(Store::kPath, "older", 1);
    RunOnFile(Store::kPath,
              std::string("ALTER TABLE ") + test::RowsOf<TypeParam>::kTable + " RENAME TO away");
    EXPECT_FALSE(this->Rotate());
    EXPECT_TRUE(fs::exists(work)) << "it stays until the next run";
    RunOnFile(Store::kPath,
              std::string("ALTER TABLE away RENAME TO ") + test::RowsOf<TypeParam>::kTable);
    EXPECT_TRUE(this->Rotate());
    EXPECT_THAT(this->Names(Store::kMainPath), ElementsAre("old", "older"));
    EXPECT_THAT(this->Names(Store::kPath), IsEmpty());
    EXPECT_EQ(Files().size(), 2U);
}

TYPED_TEST(RotaterTest, WaitsForTheOperationLock) {
    using Store = StoreTraits<TypeParam>;
    this->Add(Store::kPath, "old", 1);
    int lock = -1;
    ASSERT_TRUE(pscFileLockByFile(Store::kOperationLock, 1, &lock));
    test::Child rotation([this] { return std::string(this->Rotate() ? "rotated" : "failed"); });
    rotation.AwaitWaitForLock();
    EXPECT_EQ(Files().size(), 1U);
    EXPECT_TRUE(pscFileUnlockByFile(lock));
    EXPECT_EQ(rotation.Wait(), "rotated");
    EXPECT_THAT(this->Names(Store::kMainPath), ElementsAre("old"));
}

class Rotation : public RotaterTest<MailLogDB> {};

// The same statement with a cap of 3 rows in place of 4,000,000.
TEST_F(Rotation, CapKeepsTheBoundaryRowsDateAndWhatIsYounger) {
    auto store = db::Provider(Traits::kPath).Get<MailLogDB>(false);
    const std::string clean_up =
        utils::Replace(Rotater<MailLogDB>("").CleanUpQuery(store, "main"), "4000000", "3");
    const test::Table<std::vector<int>, std::size_t> rows = {
        {std::vector<int>{}, 0},    {{1, 2, 3}, 3}, {{1, 2, 3, 4}, 4}, {{1, 2, 3, 4, 5}, 4},
        {{1, 2, 2, 2, 3, 4, 5}, 6},
    };
    for (const auto& [dates, kept] : rows) {
        RunOnFile(Traits::kPath, "DELETE FROM mail_log_table");
        for (const int date : dates) {
            Add(Traits::kPath, "x", date);
        }
        RunOnFile(Traits::kPath, clean_up);
        EXPECT_EQ(Names(Traits::kPath).size(), kept) << dates.size();
    }
}

TEST_F(Rotation, FollowsALinkToTheStore) {
    const std::string link = "/tmp/linked.db";
    fs::remove(link);
    fs::create_symlink(Traits::kPath, link);
    Add(Traits::kPath, "old", 1);
    EXPECT_TRUE(Rotater<MailLogDB>(link).Rotate());
    EXPECT_THAT(Names(Traits::kMainPath), ElementsAre("old"));
    EXPECT_THAT(Names(Traits::kPath), IsEmpty());
    EXPECT_EQ(Files().size(), 2U);
    EXPECT_EQ(log_.TakeErrors(), Lines());
}

TEST_F(Rotation, ReadOnlyLongTermFileIsReplaced) {
    Add(Traits::kPath, "old", 1);
    EXPECT_TRUE(Rotate());
    fs::permissions(Traits::kMainPath, fs::perms(0444));
    Add(Traits::kPath, "older", 1);
    EXPECT_TRUE(Rotate());
    EXPECT_EQ(Names(Traits::kMainPath).size(), 2U);
    EXPECT_EQ(OwnerAndMode(Traits::kMainPath), "8025 " + std::to_string(0644));
}

TEST_F(Rotation, TellsWhyItFailedAndLosesNothing) {
    const std::string folder = fs::canonical(test::kSpool).string() + "/";
    const auto corrupt = [](const std::string& path) {
        test::WriteTextFile(path, "SQLite format 3" + std::string(5000, 'x'));
    };
    const struct {
        std::string path;
        std::function<void()> spoil;
        std::string error;
        bool long_term_is_whole = true;
    } rows[] = {
        {test::kSpool + "none.db", [] {},
         "Can't resolve real path, " + test::kSpool + "none.db No such file or directory"},
        {"/tmp/elsewhere.db", [] { fs::copy_file(Traits::kPath, "/tmp/elsewhere.db"); },
         "Prepare rotation environment fail, illegal path"},
        {Traits::kPath, [&] { fs::create_directory(folder + "tmp_aggr_mail_log.db"); },
         "Prepare rotation environment fail, unlink tmp file fail"},
        {Traits::kPath, [&] { corrupt(Traits::kMainPath); },
         "DB upgrade failed, path from:" + folder + "aggr_mail_log_main.db", false},
        {Traits::kPath,
         [&] {
             corrupt(Traits::kArchivePath);
             mailConfSet(kEnabled, "yes", false, 0);
         },
         "DB upgrade failed, path from:" + folder + "archive_aggr_mail_log.db"},
        {test::kSpool + "a;b.db", [&] { fs::copy_file(Traits::kPath, folder + "a;b.db"); },
         "Rotate DB operation fail, rotate fail"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.error);
        test::EmptySpool();
        mailConfSet(kEnabled, "no", false, 0);
        for (const char* path : {Traits::kPath, Traits::kMainPath}) {
            db::Provider(path).Get<MailLogDB>(false);
            Add(path, path, 1);
        }
        row.spoil();
        log_.Take();
        EXPECT_FALSE(Rotater<MailLogDB>(row.path).Rotate());
        Lines errors = log_.TakeErrors();
        ASSERT_GE(errors.size(), 2U);
        EXPECT_THAT(Lines(errors.end() - 2, errors.end()),
                    ElementsAre(row.error, "rotate file: " + row.path + " fail"));
        EXPECT_THAT(Names(Traits::kPath), ElementsAre(Traits::kPath));
        if (row.long_term_is_whole) {
            EXPECT_THAT(Names(Traits::kMainPath), ElementsAre(Traits::kMainPath));
        }
    }
}

TEST_F(Rotation, GoesWithoutTheArchiveWhereTheSettingsCantBeRead) {
    const std::string settings = "/var/packages/PostCube-Server/etc/mailserver.conf";
    test::WriteTextFile(settings, "no setting");
    Add(Traits::kPath, "old", 1);
    log_.Take();
    EXPECT_TRUE(Rotate());
    fs::remove(settings);
    EXPECT_THAT(log_.TakeErrors(), ElementsAre("get redis key fail: archive_enable_schedule"));
    EXPECT_THAT(Files(), ElementsAre("aggr_mail_log.db", "aggr_mail_log_main.db"));
}

}  // namespace
}  // namespace serverlog::log::rotation
