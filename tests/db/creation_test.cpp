#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/exception/exception.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "support/child.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/syslog_socket.h"

namespace serverlog::db {
namespace {

using test::kSpool;
using test::RunOnFile;
using Rows = std::vector<std::string>;

const std::string kPath = kSpool + "store.db";

template <class DB>
struct Expected;

template <>
struct Expected<AdminLogDB> {
    static constexpr char kLock[] = "/var/lock/postcube_server/admin_log_db.lock";
    static constexpr char kSchema[] =
        "\nCREATE TABLE admin_log (\n\ttab_type INTEGER NOT NULL,\n\tstatement TEXT,\n\tuser TEXT "
        "NOT NULL,\n\tuid BIGINT NOT NULL,\n\tdate BIGINT NOT NULL,\n\tip TEXT,\n\tserver "
        "TEXT,\n\twebapi_param TEXT);\nCREATE INDEX IF NOT EXISTS main.tab_type_idx ON admin_log "
        "(tab_type);\nCREATE INDEX IF NOT EXISTS main.statement_idx ON admin_log "
        "(statement);\nCREATE INDEX IF NOT EXISTS main.user_idx ON admin_log (user);\nCREATE INDEX "
        "IF NOT EXISTS main.date_idx ON admin_log (date);\nCREATE INDEX IF NOT EXISTS main.ip_idx "
        "ON admin_log (ip);\nCREATE INDEX IF NOT EXISTS main.server_idx ON admin_log (server);";
};

template <>
struct Expected<MailLogDB> {
    static constexpr char kLock[] = "/var/lock/postcube_server/mail_log_db.lock";
    static constexpr char kSchema[] =
        "\nCREATE TABLE mail_log_table (\n\tmessage_id TEXT,\n\tqueue_id TEXT,\n\tdate "
        "INTEGER,\n\tmail_from TEXT,\n\tmail_to TEXT,\n\tsize INTEGER,\n\tstatus INTEGER,\n\thost "
        "TEXT,\n\tsubject TEXT,\n\tori_mail_to TEXT);\nCREATE INDEX IF NOT EXISTS "
        "main.mail_log_table_message_id_idx ON mail_log_table (message_id);\nCREATE INDEX IF NOT "
        "EXISTS main.mail_log_table_date_idx ON mail_log_table (date);\nCREATE INDEX IF NOT EXISTS "
        "main.mail_log_table_mail_from_idx ON mail_log_table (mail_from);\nCREATE INDEX IF NOT "
        "EXISTS main.mail_log_table_mail_to_idx ON mail_log_table (mail_to);\nCREATE INDEX IF NOT "
        "EXISTS main.mail_log_table_size_idx ON mail_log_table (size);\nCREATE INDEX IF NOT EXISTS "
        "main.mail_log_table_status_idx ON mail_log_table (status);\nCREATE INDEX IF NOT EXISTS "
        "main.mail_log_table_subject_idx ON mail_log_table (subject);\nCREATE INDEX IF NOT EXISTS "
        "main.mail_log_table_ori_mail_to_idx ON mail_log_table (ori_mail_to);";
};

template <>
struct Expected<SecurityLogDB> {
    static constexpr char kLock[] = "/var/lock/postcube_server/security_log_db.lock";
    static constexpr char kSchema[] =
        "\nCREATE TABLE security_log_table (\n\tdate INTEGER,\n\tsrc TEXT,\n\ttype TEXT,\n\tevent "
        "TEXT,\n\thost TEXT,\n\tsender TEXT,\n\trecipient TEXT,\n\tsubject TEXT);\nCREATE INDEX IF "
        "NOT EXISTS main.security_log_table_date_idx ON security_log_table (date);\nCREATE INDEX "
        "IF NOT EXISTS main.security_log_table_src_idx ON security_log_table (src);\nCREATE INDEX "
        "IF NOT EXISTS main.security_log_table_type_idx ON security_log_table (type);\nCREATE "
        "INDEX IF NOT EXISTS main.security_log_table_sender_idx ON security_log_table "
        "(sender);\nCREATE INDEX IF NOT EXISTS main.security_log_table_recipient_idx ON "
        "security_log_table (recipient);\nCREATE INDEX IF NOT EXISTS "
        "main.security_log_table_subject_idx ON security_log_table (subject);";
};

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
};
using Stores = testing::Types<AdminLogDB, MailLogDB, SecurityLogDB>;
TYPED_TEST_SUITE(Creation, Stores, );

TYPED_TEST(Creation, MakesTheNewestSchemaAtOnce) {
    TypeParam store = this->Get();
    EXPECT_EQ(store.CreateSchema(), Expected<TypeParam>::kSchema);
    EXPECT_EQ(store.DbLock(), Expected<TypeParam>::kLock);
    EXPECT_TRUE(std::filesystem::exists(Expected<TypeParam>::kLock));
    EXPECT_EQ(store.GetVersion(), 4);
    // Made by hand in another file, it is the same schema, and no step has left a trace.
    const std::string other = kSpool + "other.db";
    RunOnFile(other, Expected<TypeParam>::kSchema);
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
        int start[2];
        ASSERT_EQ(pipe2(start, O_CLOEXEC), 0);
        std::vector<std::unique_ptr<test::Child>> children;
        for (int i = 0; i < 8; ++i) {
            children.push_back(std::make_unique<test::Child>([this, &start]() -> std::string {
                close(start[1]);
                char byte = 0;
                if (read(start[0], &byte, 1) != 0) {
                    return "no start";
                }
                TypeParam store = this->Get();
                return store.MainTable().Create({}) ? "" : "no row";
            }));
        }
        close(start[0]);
        close(start[1]);  // all children read the end of the pipe at once
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
    const std::string lock = Expected<TypeParam>::kLock;
    std::filesystem::remove_all(lock);
    std::filesystem::create_directories(lock);
    for (const char* state : {"missing", "existing"}) {
        EXPECT_EQ(this->GetFails(), DBError::CheckVersionLockFail) << state;
        const auto lines = this->log_.TakeErrors();
        ASSERT_EQ(lines.size(), 2U) << state;
        EXPECT_EQ(lines[0], "Can not get exclusive file lock, " + lock);
        EXPECT_EQ(lines[1], "DB check version get lock fail");
    }
    std::filesystem::remove_all(lock);
}

TYPED_TEST(Creation, ReportsAFileThatIsNoDatabase) {
    const int file = open(kPath.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    ASSERT_EQ(write(file, std::string(4096, 'x').data(), 4096), 4096);
    close(file);
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
    chmod(Expected<TypeParam>::kLock, 0666);
    const std::string path = folder + "/store.db";
    const std::string result = test::InChild([&]() -> std::string {
        if (setresgid(test::kOtherUser, test::kOtherUser, test::kOtherUser) != 0 ||
            setresuid(test::kOtherUser, test::kOtherUser, test::kOtherUser) != 0) {
            return "still root";
        }
        try {
            Provider(path).Get<TypeParam>(false);
        } catch (const Exception<ETag::DB>& error) {
            return exception_str(error);
        }
        return "opened";
    });
    EXPECT_EQ(result, "DB create with init schema failed, path from:" + path);
}

}  // namespace
}  // namespace serverlog::db
