// Whatever happens to an archive run, each row that waits for the archive is in the spool folder or
// in the destination, whole, and the next run takes it there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/log/archive/archiver.h>
#include <mailserver/mail_conf.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/named_rows.h"
#include "support/small_volume.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/text_file.h"
#include "support/traced_child.h"

namespace serverlog::log::archive {
namespace {

namespace fs = std::filesystem;
using db::AdminLogDB;
using Names = std::vector<std::string>;
using Traits = db::StoreTraits<AdminLogDB>;

constexpr ArchiveFlags kFlags = kArchiveAdminLog | kArchivePlainMailLogs;
constexpr std::time_t kDay = 1709380800;  // 2024-03-02 12:00 UTC
constexpr int kRows = 300;
const std::string kTemplate = "/tmp/template/";
const std::string kPlainName = "aggr_maillog-1";
const std::string kPlainText(100000, 'x');

void Fill(const std::string& path) {
    db::Provider(path).Get<AdminLogDB>(false);
    std::string script = "BEGIN;";
    for (int i = 0; i < kRows; ++i) {
        script += test::InsertRow<AdminLogDB>(std::to_string(i) + std::string(50, '.'), kDay);
    }
    test::RunOnFile(path, script + "COMMIT;");
}

std::size_t RowsOf(const std::string& path) {
    return test::RunOnFile(path, "PRAGMA quick_check;" + test::SelectNames<AdminLogDB>()).size() -
           1;
}

void Archive() {
    Archiver(kFlags).Archive();
}

/// The destination on the volume of the stores, and on another one.
class ArchiveNoRowLost : public testing::TestWithParam<const char*> {
 protected:
    ArchiveNoRowLost() {
        setenv("TZ", "UTC", 1);
        tzset();
        test::EmptySpool();
        Fill(Traits::kPath);
        Fill(Traits::kArchivePath);
        test::WriteTextFile(test::kSpool + kPlainName, kPlainText);
        fs::remove_all(kTemplate);
        fs::copy(test::kSpool, kTemplate);
        fs::create_directories(dest_);
        mailConfSet("archive_enable_schedule", "yes", false, 0);
        mailConfSet("archive_destination", dest_, false, 0);
    }

    ~ArchiveNoRowLost() override { fs::remove_all(dest_); }

    void Restore() const {
        test::EmptySpool();
        fs::copy(kTemplate, test::kSpool);
        for (const auto& entry : fs::directory_iterator(dest_)) {
            fs::remove_all(entry);
        }
        mailConfSet("archive_last_archive_time", "1", false, 0);
    }

    /// To be called when a run was broken off.
    void CheckAll() const {
        const std::string moved = dest_ + "/20240302_20240302_archive_admin_log.db";
        for (const std::string& path : {std::string(Traits::kArchivePath), moved}) {
            EXPECT_TRUE(!fs::exists(path) || RowsOf(path) == std::size_t{kRows}) << path;
        }
        EXPECT_TRUE(fs::exists(moved) || fs::exists(Traits::kArchivePath));
        EXPECT_EQ(RowsOf(Traits::kPath), std::size_t{kRows});
        Archiver(kFlags).Archive();
        EXPECT_EQ(RowsOf(moved), std::size_t{kRows});
        EXPECT_EQ(RowsOf(dest_ + "/admin_log.db"), std::size_t{kRows});
        EXPECT_EQ(test::ReadTextFile(dest_ + "/" + kPlainName), kPlainText);
        for (const auto& entry : fs::directory_iterator(dest_)) {
            EXPECT_NE(entry.path().extension(), ".part") << entry.path();
        }
    }

    const std::string dest_ = GetParam();
};

INSTANTIATE_TEST_SUITE_P(All, ArchiveNoRowLost,
                         testing::Values("/volume1/near", "/dev/shm/other volume"));

TEST_P(ArchiveNoRowLost, ByAKillAtAnyMoment) {
    constexpr std::size_t kPoints = 80;
    Restore();
    const std::size_t changes = test::CountChanges(Archive);
    for (std::size_t point = 0; point < std::min(kPoints, changes); ++point) {
        const std::size_t change = changes <= kPoints ? point : point * changes / kPoints;
        SCOPED_TRACE("change " + std::to_string(change) + " of " + std::to_string(changes));
        Restore();
        ASSERT_EQ(test::KillBeforeChange(Archive, change), change);
        CheckAll();
        if (HasFailure()) {
            break;
        }
    }
}

TEST_P(ArchiveNoRowLost, ByAFullDiskAtAnyMoment) {
    const test::SmallVolume volume(dest_);
    SKIP_UNLESS_MOUNTED(volume);
    int failed = 0;
    bool done = false;
    for (long room = 0; !done; room += 16 << 10) {
        SCOPED_TRACE(std::to_string(room) + " bytes left");
        Restore();
        volume.Limit(room);
        done =
            test::InChild([] { return Archiver(kFlags).Archive() ? "done" : "failed"; }) == "done";
        failed += done ? 0 : 1;
        volume.Limit(-1);
        CheckAll();
        if (HasFailure()) {
            break;
        }
    }
    EXPECT_GT(failed, 5);
}

}  // namespace
}  // namespace serverlog::log::archive
