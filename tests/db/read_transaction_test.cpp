#include "db/read_transaction.h"

#include <gtest/gtest.h>
#include <soci/soci.h>

#include <filesystem>

#include "support/spool.h"
#include "support/sqlite_file.h"

namespace serverlog::db {
namespace {

using test::kSpool;
using test::RunOnFile;

class ReadTransactionTest : public testing::Test {
 protected:
    ReadTransactionTest() {
        test::EmptySpool();
        RunOnFile(kSpool + "a.db", "CREATE TABLE t (n); INSERT INTO t VALUES (1)");
        RunOnFile(kSpool + "b.db", "CREATE TABLE t (n); INSERT INTO t VALUES (10)");
        session_.RawQuery("ATTACH DATABASE \"" + kSpool + "b.db\" AS DB1");
    }

    int Sum() {
        int sum = 0;
        session_.GetRawSession() << "SELECT (SELECT n FROM main.t) + (SELECT n FROM DB1.t)",
            soci::into(sum);
        return sum;
    }

    static void ReplaceAttached() {
        RunOnFile(kSpool + "new.db", "CREATE TABLE t (n); INSERT INTO t VALUES (20)");
        std::filesystem::rename(kSpool + "new.db", kSpool + "b.db");
    }

    merodbquery::Session session_ = merodbquery::Session::SQLite(kSpool + "a.db");
};

TEST_F(ReadTransactionTest, KeepsThePictureOfAFileThatIsReplaced) {
    {
        const ReadTransaction transaction(session_);
        EXPECT_EQ(Sum(), 11);
        ReplaceAttached();
        EXPECT_EQ(Sum(), 11);
    }
    EXPECT_EQ(Sum(), 21);
}

TEST_F(ReadTransactionTest, LeavesATransactionThatWasOpenBefore) {
    session_.RawQuery("BEGIN");
    session_.RawQuery("UPDATE main.t SET n = 3");
    {
        const ReadTransaction transaction(session_);
        EXPECT_EQ(Sum(), 13);
    }
    EXPECT_TRUE(session_.RawQuery("ROLLBACK"));
    EXPECT_EQ(Sum(), 11);
}

}  // namespace
}  // namespace serverlog::db
