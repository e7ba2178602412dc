// Whatever happens to a rotation, each row is in one of the files, and the next rotation works.

#include <gmock/gmock.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/log/rotation/rotater.h>
#include <mailserver/mail_conf.h>
#include <merodbquery/session.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/named_rows.h"
#include "support/small_volume.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_reader.h"
#include "support/text_file.h"
#include "support/traced_child.h"

namespace serverlog::log::rotation {
namespace {

namespace fs = std::filesystem;
using db::AdminLogDB;
using db::MailLogDB;
using merodbquery::Session;
using test::RunOnFile;
using testing::IsEmpty;
using Names = std::vector<std::string>;

constexpr std::time_t kOld = 1;
constexpr std::time_t kNew = 2000000000;  // not before May 2033
constexpr int kRows = 300;
const std::string kTemplate = "/tmp/template/";

template <class DB>
using Traits = db::StoreTraits<DB>;

template <class DB>
bool Rotate() {
    return Rotater<DB>(Traits<DB>::kPath).Rotate();
}

template <class DB>
void Fill(const std::string& path, const std::string& name, std::time_t date) {
    std::string script = "BEGIN;";
    for (int i = 0; i < kRows; ++i) {
        script += test::InsertRow<DB>(name + std::to_string(i) + std::string(50, '.'), date);
    }
    RunOnFile(path, script + "COMMIT;");
}

template <class DB>
Names RowsOf(const std::string& path) {
    return fs::exists(path) ? RunOnFile(path, test::SelectNames<DB>()) : Names();
}

/// The rows of the current and the long-term file, sorted, each as often as it is there.
template <class DB>
Names AllRows() {
    Names rows = RowsOf<DB>(Traits<DB>::kPath);
    const Names moved = RowsOf<DB>(Traits<DB>::kMainPath);
    rows.insert(rows.end(), moved.begin(), moved.end());
    std::sort(rows.begin(), rows.end());
    return rows;
}

Names Once(Names rows) {
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

/// A store with rows in all three of its files, each of 300 rows: the current one has as many again
/// that stay.
template <class DB>
class NoRowLost : public testing::Test {
 protected:
    NoRowLost() {
        mailConfSet("archive_enable_schedule", "yes", false, 0);
        test::EmptySpool();
        db::Provider(Traits<DB>::kPath).template Get<DB>(false);
        Fill<DB>(Traits<DB>::kPath, "first", kOld);
        EXPECT_TRUE(Rotate<DB>());
        Fill<DB>(Traits<DB>::kPath, "second", kOld);
        Fill<DB>(Traits<DB>::kPath, "new", kNew);
        fs::remove_all(kTemplate);
        fs::copy(test::kSpool, kTemplate);
        all_ = AllRows<DB>();
        EXPECT_EQ(all_.size(), 3U * kRows);
    }

    void Restore() const {
        test::EmptySpool();
        fs::copy(kTemplate, test::kSpool);
    }

    /// To be called when a rotation was broken off.
    void CheckAll() const {
        EXPECT_EQ(Once(AllRows<DB>()), all_);
        const Names waiting = Once(RowsOf<DB>(Traits<DB>::kArchivePath));
        EXPECT_TRUE(waiting.size() == kRows || waiting.size() == 2U * kRows);
        ASSERT_TRUE(Rotate<DB>());
        EXPECT_EQ(Once(AllRows<DB>()), all_);
        EXPECT_EQ(RowsOf<DB>(Traits<DB>::kPath).size(), std::size_t{kRows});
        EXPECT_EQ(Once(RowsOf<DB>(Traits<DB>::kArchivePath)).size(), 2U * kRows);
        EXPECT_EQ(test::FilesIn(test::kSpool).size(), 3U);
    }

    Names all_;
};

using SomeStores = testing::Types<AdminLogDB, MailLogDB>;
TYPED_TEST_SUITE(NoRowLost, SomeStores, );

TYPED_TEST(NoRowLost, ByAKillAtAnyMoment) {
    constexpr std::size_t kPoints = 60;
    const auto rotate = [] { Rotate<TypeParam>(); };
    const std::size_t changes = test::CountChanges(rotate);
    ASSERT_GT(changes, kPoints);
    EXPECT_EQ(AllRows<TypeParam>(), this->all_) << "nothing was interrupted";
    for (std::size_t point = 0; point < kPoints; ++point) {
        const std::size_t change = point * changes / kPoints;
        SCOPED_TRACE("change " + std::to_string(change) + " of " + std::to_string(changes));
        this->Restore();
        ASSERT_EQ(test::KillBeforeChange(rotate, change), change);
        this->CheckAll();
        if (this->HasFailure()) {
            break;
        }
    }
}

TYPED_TEST(NoRowLost, ByWritersAndRotationsAtOnce) {
    // All writers date their rows back, as one that was late over midnight does.
    const auto write = [](const std::string& name) {
        return [name] {
            Session session = Session::SQLite(Traits<TypeParam>::kPath);
            for (int i = 0; i < kRows; ++i) {
                if (!session.RawQuery(test::InsertRow<TypeParam>(name + std::to_string(i), kOld))) {
                    return std::string("not written");
                }
            }
            return std::string("written");
        };
    };
    const auto rotate = [] {
        bool done = true;
        for (int i = 0; i < 5; ++i) {
            done = Rotate<TypeParam>() && done;
        }
        return std::string(done ? "rotated" : "failed");
    };
    test::Child writer(write("writer"));
    test::Child other_writer(write("other writer"));
    test::Child rotation(rotate);
    test::Child other_rotation(rotate);
    EXPECT_EQ(writer.Wait(), "written");
    EXPECT_EQ(other_writer.Wait(), "written");
    EXPECT_EQ(rotation.Wait(), "rotated");
    EXPECT_EQ(other_rotation.Wait(), "rotated");
    EXPECT_TRUE(Rotate<TypeParam>());
    const Names rows = AllRows<TypeParam>();
    EXPECT_EQ(rows.size(), 5U * kRows);
    EXPECT_EQ(Once(rows).size(), 5U * kRows) << "each once";
    EXPECT_EQ(RowsOf<TypeParam>(Traits<TypeParam>::kPath).size(), std::size_t{kRows});
}

// Rows that are in the write-ahead log alone, of files that readers keep open.
TYPED_TEST(NoRowLost, ByReadersOfWriteAheadLogs) {
    using Store = Traits<TypeParam>;
    const char* const paths[] = {Store::kPath, Store::kMainPath, Store::kArchivePath};
    for (const char* path : paths) {
        RunOnFile(path, "PRAGMA journal_mode = WAL");
    }
    const std::string query = test::SelectNames<TypeParam>();
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        // While a session is open, what others write stays in the log.
        std::vector<Session> sessions;
        std::vector<std::unique_ptr<test::StoreReader>> readers;
        for (const char* path : paths) {
            EXPECT_TRUE(sessions.emplace_back(Session::SQLite(path)).RawQuery(query));
            RunOnFile(path, test::InsertRow<TypeParam>(path + std::to_string(round), kOld));
            readers.push_back(std::make_unique<test::StoreReader>(path, query));
        }
        Fill<TypeParam>(paths[0], "round " + std::to_string(round) + " ", kOld);
        EXPECT_TRUE(Rotate<TypeParam>());
        EXPECT_FALSE(fs::exists(std::string(paths[1]) + "-wal"));
        for (const auto& reader : readers) {
            EXPECT_EQ(reader->Finish(), "read");
        }
        const Names rows = AllRows<TypeParam>();
        const int added = 2 * (round + 1);
        EXPECT_EQ(rows.size(), static_cast<std::size_t>((4 + round) * kRows + added));
        EXPECT_EQ(Once(rows).size(), rows.size());
        EXPECT_EQ(RowsOf<TypeParam>(paths[2]).size(),
                  static_cast<std::size_t>((3 + round) * kRows + added));
        EXPECT_EQ(RunOnFile(paths[1], "PRAGMA quick_check"), Names{"ok"});
        RunOnFile(paths[1], "PRAGMA journal_mode = WAL");
    }
}

TYPED_TEST(NoRowLost, ByAFullDiskAtAnyMoment) {
    const test::SmallVolume volume(test::kSpool);
    SKIP_UNLESS_MOUNTED(volume);
    int failed = 0;
    bool done = false;
    for (long room = 0; !done; room += 16 << 10) {
        SCOPED_TRACE(std::to_string(room) + " bytes left");
        this->Restore();
        volume.Limit(room);
        // In a process of its own: its shared session is another one's, as after a new start.
        done =
            test::InChild([] { return Rotate<TypeParam>() ? "rotated" : "failed"; }) == "rotated";
        failed += done ? 0 : 1;
        volume.Limit(-1);
        this->CheckAll();
        if (this->HasFailure()) {
            break;
        }
    }
    EXPECT_GT(failed, 10);
}

}  // namespace
}  // namespace serverlog::log::rotation
