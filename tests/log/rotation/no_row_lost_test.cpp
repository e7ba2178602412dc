// Whatever happens to a rotation, each row is in one of the files, and the next rotation works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/log/rotation/rotater.h>
#include <mailserver/mail_conf.h>
#include <merodbquery/session.h>
#include <sys/mount.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/named_rows.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
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

Names Files() {
    Names names;
    for (const auto& entry : fs::directory_iterator(test::kSpool)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

/// A store with rows in all three of its files, each of 300 rows: the current one has as many again
/// that stay.
template <class DB>
class NoRowLost : public testing::Test {
 protected:
    NoRowLost() {
        mailConfSet("archive_enable_schedule", "yes", false, 0);
        Clear();
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

    static void Clear() { test::EmptySpool(); }

    void Restore() const {
        Clear();
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
        EXPECT_EQ(Files().size(), 3U);
    }

    Names all_;
};

using SomeStores = testing::Types<AdminLogDB, MailLogDB>;
TYPED_TEST_SUITE(NoRowLost, SomeStores);

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

/// A reader in a process of its own that keeps a picture of a file in WAL mode until it is told to
/// end.
class WalReader {
 public:
    WalReader(const std::string& path, const std::string& query)
        : child_([this, path, query] {
              Session session = Session::SQLite(path);
              session.RawQuery("BEGIN");
              const bool has_read = session.RawQuery(query);
              Pass(started_[1]);
              Await(finish_[0]);
              return std::string(has_read && session.RawQuery("COMMIT") ? "read" : "failed");
          }) {
        Await(started_[0]);
    }

    std::string Finish() {
        Pass(finish_[1]);
        return child_.Wait();
    }

 private:
    struct Pipe {
        Pipe() { EXPECT_EQ(pipe(ends), 0); }
        ~Pipe() {
            close(ends[0]);
            close(ends[1]);
        }
        int operator[](int end) const { return ends[end]; }
        int ends[2];
    };

    static void Pass(int end) { EXPECT_EQ(write(end, "", 1), 1); }
    static void Await(int end) {
        char byte = 0;
        EXPECT_EQ(read(end, &byte, 1), 1);
    }

    Pipe started_;
    Pipe finish_;
    test::Child child_;
};

TYPED_TEST(NoRowLost, ByReadersOfWriteAheadLogs) {
    const char* const paths[] = {Traits<TypeParam>::kPath, Traits<TypeParam>::kMainPath};
    for (const char* path : paths) {
        RunOnFile(path, "PRAGMA journal_mode = WAL");
    }
    const std::string query = test::SelectNames<TypeParam>();
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        WalReader current(paths[0], query);
        WalReader long_term(paths[1], query);
        Fill<TypeParam>(paths[0], "round " + std::to_string(round) + " ", kOld);
        EXPECT_TRUE(Rotate<TypeParam>());
        EXPECT_FALSE(fs::exists(std::string(paths[1]) + "-wal"));
        EXPECT_EQ(current.Finish(), "read");
        EXPECT_EQ(long_term.Finish(), "read");
        const Names rows = AllRows<TypeParam>();
        EXPECT_EQ(rows.size(), static_cast<std::size_t>(4 + round) * kRows);
        EXPECT_EQ(Once(rows).size(), rows.size());
        EXPECT_EQ(RunOnFile(paths[1], "PRAGMA quick_check"), Names{"ok"});
        RunOnFile(paths[1], "PRAGMA journal_mode = WAL");
    }
}

/// The spool folder on a volume of its own with little room.
class SmallVolume {
 public:
    SmallVolume() { mounted_ = Mount(0, 16 << 20); }
    ~SmallVolume() {
        if (mounted_) {
            umount(folder_.c_str());
        }
    }
    SmallVolume(const SmallVolume&) = delete;
    SmallVolume& operator=(const SmallVolume&) = delete;

    bool Mounted() const { return mounted_; }

    /// Leaves so much room, in bytes; negative for plenty.
    void Limit(long room) const {
        const fs::space_info space = fs::space(folder_);
        const auto used = static_cast<long>(space.capacity - space.available);
        EXPECT_TRUE(Mount(MS_REMOUNT, room < 0 ? 16 << 20 : used + room));
    }

 private:
    bool Mount(unsigned long flags, long size) const {
        const std::string options = "size=" + std::to_string(size) + ",mode=0755";
        return mount("tmpfs", folder_.c_str(), "tmpfs", flags, options.c_str()) == 0;
    }

    const std::string folder_ = fs::canonical(test::kSpool).string();
    bool mounted_ = false;
};

TYPED_TEST(NoRowLost, ByAFullDiskAtAnyMoment) {
    const SmallVolume volume;
    if (!volume.Mounted()) {
        GTEST_SKIP() << "needs the right to mount: run the tests in a sandbox with namespaces";
    }
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
