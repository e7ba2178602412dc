#include <gmock/gmock.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/upgrade/upgrader.h>

#include <filesystem>
#include <string>

#include "support/named_rows.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/syslog_socket.h"
#include "support/text_file.h"

namespace serverlog::log::upgrade {
namespace {

namespace fs = std::filesystem;
using db::AdminLogDB;
using db::MailLogDB;
using db::SecurityLogDB;
using test::RunOnFile;
using testing::ElementsAre;
using testing::IsEmpty;

template <class DB>
class UpgraderTest : public testing::Test {
 protected:
    UpgraderTest() { test::EmptySpool(); }

    static std::string Version(const std::string& path) {
        return RunOnFile(path, "PRAGMA user_version").front();
    }

    test::SyslogSocket log_;
};

using Stores = testing::Types<AdminLogDB, MailLogDB, SecurityLogDB>;
TYPED_TEST_SUITE(UpgraderTest, Stores, );

TYPED_TEST(UpgraderTest, UpgradesTheFilesThatExist) {
    using Store = db::StoreTraits<TypeParam>;
    EXPECT_TRUE(Upgrader<TypeParam>().Upgrade());
    EXPECT_TRUE(fs::is_empty(test::kSpool));

    test::WriteTextFile(Store::kPath, "");  // version 0
    EXPECT_TRUE(Upgrader<TypeParam>().Upgrade());
    EXPECT_EQ(this->Version(Store::kPath), "4");
    EXPECT_FALSE(fs::exists(Store::kMainPath));

    test::WriteTextFile(Store::kMainPath, "");
    test::WriteTextFile(Store::kArchivePath, "");
    RunOnFile(Store::kPath, test::InsertRow<TypeParam>("kept", 1) + "PRAGMA user_version = 9");
    EXPECT_TRUE(Upgrader<TypeParam>().Upgrade());
    EXPECT_EQ(this->Version(Store::kMainPath), "4");
    EXPECT_EQ(this->Version(Store::kArchivePath), "4");
    EXPECT_EQ(this->Version(Store::kPath), "9") << "that of a newer release";
    EXPECT_THAT(RunOnFile(Store::kPath, test::SelectNames<TypeParam>()), ElementsAre("kept"));
    EXPECT_THAT(this->log_.TakeErrors(), IsEmpty());
}

TYPED_TEST(UpgraderTest, GoesOnBehindAFileThatIsCorrupt) {
    using Store = db::StoreTraits<TypeParam>;
    test::WriteTextFile(Store::kMainPath, "SQLite format 3" + std::string(5000, 'x'));
    test::WriteTextFile(Store::kArchivePath, "");
    EXPECT_FALSE(Upgrader<TypeParam>().Upgrade());
    EXPECT_EQ(this->log_.TakeErrors().back(),
              std::string("failed to upgrade db: ") + Store::kMainPath);
    EXPECT_EQ(this->Version(Store::kArchivePath), "4");
}

TYPED_TEST(UpgraderTest, ThrowsWithoutTheLock) {
    using Store = db::StoreTraits<TypeParam>;
    fs::remove(Store::kOperationLock);
    fs::create_directories(Store::kOperationLock);
    EXPECT_THROW(Upgrader<TypeParam>().Upgrade(), Exception<ETag::SDK>);
    fs::remove(Store::kOperationLock);
}

}  // namespace
}  // namespace serverlog::log::upgrade
