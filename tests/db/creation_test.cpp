#include <gmock/gmock.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/exception/exception.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "support/child.h"
#include "support/outcome.h"
#include "support/signpost.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/syslog_socket.h"
#include "support/text_file.h"

namespace serverlog::db {
namespace {

using test::kSpool;
using test::RunOnFile;
using Rows = std::vector<std::string>;

const std::string kPath = kSpool + "store.db";

/// Kills the process when it is about to stamp a version into any database that it has open.
int KillAtStamp(void* /*data*/, int action, const char* pragma, const char* value,
                const char* /*schema*/, const char* /*trigger*/) {
    if (action == SQLITE_PRAGMA && std::strcmp(pragma, "user_version") == 0 && value != nullptr) {
        raise(SIGKILL);
    }
    return SQLITE_OK;
}

int InstallKillAtStamp(sqlite3* connection, char** /*error*/,
                       const sqlite3_api_routines* /*routines*/) {
    return sqlite3_set_authorizer(connection, KillAtStamp, nullptr);
}

void KillThisProcessAtStamp() {
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(InstallKillAtStamp));
}

template <class DB>
class Creation : public testing::Test {
 protected:
    Creation() { test::EmptySpool(); }

    DB Get() { return Provider(kPath).Get<DB>(false); }

    /// Gives the code of the failure of Get; fails the test if there is none.
    DBError GetFails() {
        try {
            Get();
        } catch (const Exception<ETag::DB>& error) {
            return error.code();
        }
        ADD_FAILURE() << "the store could be opened";
        return DBError::BadSession;
    }

    Rows Columns() { return RunOnFile(kPath, "PRAGMA table_info(" + table_ + ")"); }
    Rows Indices() {
        return RunOnFile(kPath, "SELECT sql FROM sqlite_master WHERE type = 'index' ORDER BY name");
    }
    Rows Version() { return RunOnFile(kPath, "PRAGMA user_version"); }

    test::SyslogSocket log_;
    merodbquery::Session memory_ = merodbquery::Session::SQLite(":memory:");
    const std::string table_ = DB(memory_).RotateTable();
    const std::string lock_ = DB(memory_).DbLock();
};
using Stores = testing::Types<AdminLogDB, MailLogDB, SecurityLogDB>;
TYPED_TEST_SUITE(Creation, Stores, );

TYPED_TEST(Creation, MakesTheNewestSchemaAtOnce) {
    TypeParam store = this->Get();
    EXPECT_EQ(std::filesystem::path(this->lock_).parent_path(), "/var/lock/postcube_server");
    EXPECT_TRUE(std::filesystem::exists(this->lock_));
    EXPECT_EQ(store.GetVersion(), 4);
    // No step has left a trace.
    const std::string other = kSpool + "other.db";
    RunOnFile(other, store.CreateSchema());
    const char schema[] = "SELECT type, name, sql FROM sqlite_master";
    EXPECT_EQ(RunOnFile(kPath, schema), RunOnFile(other, schema));
    EXPECT_EQ(RunOnFile(kPath, "PRAGMA journal_mode"), (Rows{"delete"}));
    EXPECT_TRUE(this->log_.TakeErrors().empty());

    EXPECT_EQ(this->Get().GetVersion(), 4) << "opened again";
    EXPECT_TRUE(this->log_.TakeErrors().empty());
}

TYPED_TEST(Creation, TakesAnEmptyFileThroughTheSteps) {
    this->Get();
    const Rows columns = this->Columns();
    const Rows indices = this->Indices();
    test::EmptySpool();
    RunOnFile(kPath, "VACUUM");
    ASSERT_EQ(this->Version(), (Rows{"0"}));
    EXPECT_EQ(this->Get().GetVersion(), 4);
    EXPECT_EQ(this->Columns(), columns);
    EXPECT_EQ(this->Indices(), indices);
    const bool is_admin = std::is_same_v<TypeParam, AdminLogDB>;
    EXPECT_EQ(RunOnFile(kPath, "PRAGMA journal_mode"), Rows{is_admin ? "wal" : "delete"});
}

TYPED_TEST(Creation, LeavesANewerStoreAlone) {
    RunOnFile(kPath, "CREATE TABLE future (x); PRAGMA user_version = 9");
    EXPECT_EQ(this->Get().GetVersion(), 9);
    EXPECT_EQ(RunOnFile(kPath, "SELECT name FROM sqlite_master"), (Rows{"future"}));
}

TYPED_TEST(Creation, SucceedsInAllProcessesThatStartTogether) {
    for (int round = 0; round < 5; ++round) {
        test::EmptySpool();
        const test::Signpost start;
        std::vector<std::unique_ptr<test::Child>> children;
        for (int i = 0; i < 8; ++i) {
            children.push_back(std::make_unique<test::Child>([this, &start]() -> std::string {
                start.Await();
                TypeParam store = this->Get();
                return store.MainTable().Create({}) ? "" : "no row";
            }));
        }
        for (std::size_t i = 0; i < children.size(); ++i) {
            start.Show();
        }
        for (const auto& child : children) {
            EXPECT_EQ(child->Wait(), "") << "round " << round;
        }
        EXPECT_EQ(RunOnFile(kPath, "SELECT COUNT(*) FROM " + this->table_), (Rows{"8"}));
        EXPECT_EQ(this->Version(), (Rows{"4"}));
        EXPECT_EQ(this->log_.TakeErrors(), std::vector<std::string>());
    }
}

TYPED_TEST(Creation, FindsWhatAnotherProcessMadeInBetween) {
    class Slow : public TypeParam {
     public:
        using TypeParam::TypeParam;
        std::vector<std::function<bool(merodbquery::Session&)>> UpgradeFuncs() override {
            // First asked for while the lock is free: time for the other process.
            if (!std::exchange(asked_, true)) {
                auto other = merodbquery::Session::SQLite(kPath);
                EXPECT_TRUE(TypeParam(other).Create());
            }
            return TypeParam::UpgradeFuncs();
        }

     private:
        bool asked_ = false;
    };
    auto session = merodbquery::Session::SQLite(kPath);
    EXPECT_TRUE(Slow(session).Create());
    EXPECT_EQ(this->Version(), (Rows{"4"}));
    EXPECT_TRUE(this->log_.TakeErrors().empty());
}

TYPED_TEST(Creation, IsWholeAgainAfterAKillBeforeTheStamp) {
    const std::string result = test::InChild([this]() -> std::string {
        KillThisProcessAtStamp();
        this->Get();
        return "not killed";
    });
    ASSERT_EQ(result, "killed by signal 9");
    EXPECT_EQ(RunOnFile(kPath, "SELECT name FROM sqlite_master"), Rows());
    EXPECT_EQ(this->Version(), (Rows{"0"}));
    TypeParam store = this->Get();
    EXPECT_EQ(store.GetVersion(), 4);
    EXPECT_TRUE(store.MainTable().Create({}));
}

TYPED_TEST(Creation, LeavesNothingBehindWhenAStatementFails) {
    // Something in the way of the last index.
    RunOnFile(kPath, "CREATE TABLE other (x); CREATE INDEX date_idx ON other (x)");
    auto session = merodbquery::Session::SQLite(kPath);
    class Broken : public TypeParam {
     public:
        using TypeParam::TypeParam;
        std::string CreateSchema() const override {
            return TypeParam::CreateSchema() + "\nCREATE TABLE other (x);";
        }
    };
    EXPECT_FALSE(Broken(session).Create());
    EXPECT_EQ(this->log_.TakeErrors().back(), "exec query error: CREATE TABLE other (x)");
    EXPECT_EQ(RunOnFile(kPath, "SELECT name FROM sqlite_master"), (Rows{"other", "date_idx"}));
    EXPECT_EQ(this->Version(), (Rows{"0"}));
    EXPECT_TRUE(session.RawQuery("BEGIN")) << "no transaction is left open";
}

TYPED_TEST(Creation, KeepsTheVersionOfAStoreThatWasLockedForTooLong) {
    this->Get();
    static sqlite3* holder;
    ASSERT_EQ(sqlite3_open(kPath.c_str(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    class FreedMeanwhile : public TypeParam {
     public:
        using TypeParam::TypeParam;
        std::vector<std::function<bool(merodbquery::Session&)>> UpgradeFuncs() override {
            auto steps = TypeParam::UpgradeFuncs();
            steps[0] = [](merodbquery::Session&) {
                return sqlite3_close(std::exchange(holder, nullptr)) == SQLITE_OK;
            };
            return steps;
        }
    };
    auto session = merodbquery::Session::SQLite(kPath);
    ASSERT_TRUE(session.RawQuery("PRAGMA busy_timeout = 0"));
    EXPECT_FALSE(FreedMeanwhile(session).Upgrade());
    EXPECT_THAT(this->log_.TakeErrors(),
                testing::ElementsAre(testing::StartsWith("get admin log db version error: ")));
    sqlite3_close(std::exchange(holder, nullptr));
    EXPECT_EQ(this->Get().GetVersion(), 4);
}

TYPED_TEST(Creation, ReportsALockThatCannotBeHad) {
    std::filesystem::remove_all(this->lock_);
    std::filesystem::create_directories(this->lock_);
    for (const char* state : {"missing", "existing"}) {
        EXPECT_EQ(this->GetFails(), DBError::CheckVersionLockFail) << state;
        EXPECT_THAT(this->log_.TakeErrors(),
                    testing::ElementsAre("Can not get exclusive file lock, " + this->lock_,
                                         "DB check version get lock fail"))
            << state;
    }
    std::filesystem::remove_all(this->lock_);
}

TYPED_TEST(Creation, ReportsAFileThatIsNoDatabase) {
    test::WriteTextFile(kPath, std::string(4096, 'x'));
    EXPECT_EQ(this->GetFails(), DBError::UpgradeFail);
    EXPECT_EQ(this->log_.TakeErrors().back(), "DB upgrade failed, path from:" + kPath);
    std::filesystem::remove(kPath);
    std::filesystem::create_directory(kPath);
    EXPECT_EQ(this->GetFails(), DBError::BadSession);
    EXPECT_EQ(this->log_.TakeErrors(),
              (std::vector<std::string>{"DB bad session, path from:" + kPath}));
}

TYPED_TEST(Creation, FailsInAProcessThatMayNotBecomeRoot) {
    SKIP_WITHOUT_SECOND_USER();
    const std::string folder = kSpool + "open";
    std::filesystem::create_directory(folder);
    chmod(folder.c_str(), 0777);
    chmod(this->lock_.c_str(), 0666);
    const std::string path = folder + "/store.db";
    const std::string result = test::InChild([&path] {
        test::SetIds(test::kOtherForGood, test::kOtherForGood);
        return test::OutcomeOf<ETag::DB>([&path] { Provider(path).Get<TypeParam>(false); });
    });
    EXPECT_EQ(result, "DB create with init schema failed, path from:" + path);
}

}  // namespace
}  // namespace serverlog::db
