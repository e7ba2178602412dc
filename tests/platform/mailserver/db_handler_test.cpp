#include <gmock/gmock.h>
#include <mailserver/db_handler.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "support/sqlite_file.h"
#include "support/text_file.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kPath[] = "/tmp/handled.db";
constexpr char kScript[] = "PRAGMA journal_mode = WAL;BEGIN;CREATE TABLE t(a UNIQUE);COMMIT;";

SQLCmd Commands(std::initializer_list<const char*> statements) {
    SQLCmd commands;
    for (const char* statement : statements) {
        commands += statement;
    }
    return commands;
}

class Handler : public testing::Test {
 protected:
    void SetUp() override {
        for (const char* end : {"", "-wal", "-shm"}) {
            std::filesystem::remove(kPath + std::string(end));
        }
    }

    DBHandler handler_{kPath, kScript};
};

TEST_F(Handler, MakesAFileOnceAndOneThatWasLeftWithoutTables) {
    EXPECT_FALSE(std::filesystem::exists(kPath));
    ASSERT_EQ(handler_.connect(), 0);
    EXPECT_EQ(handler_.connect(), 0);
    EXPECT_EQ(handler_.ExecCmd("INSERT INTO t VALUES(1)"), 0);
    EXPECT_EQ(handler_.disconnect(), 0);
    EXPECT_EQ(handler_.disconnect(), 0);
    EXPECT_EQ(handler_.connect(), 0);
    EXPECT_THAT(test::RunOnFile(kPath, "SELECT a FROM t"), ElementsAre("1"));
    handler_.disconnect();

    test::RunOnFile(kPath, "DROP TABLE t; VACUUM");
    SetUp();
    test::RunOnFile(kPath, "PRAGMA journal_mode = WAL");
    ASSERT_GT(std::filesystem::file_size(kPath), 0U);
    ASSERT_EQ(handler_.connect(), 0);
    EXPECT_THAT(test::RunOnFile(kPath, "SELECT a FROM t"), IsEmpty());
}

TEST_F(Handler, TellsWhyItCannotConnect) {
    DBHandler folder("/tmp", kScript);
    EXPECT_EQ(folder.connect(), SQLITE_CANTOPEN);
    EXPECT_EQ(folder.getErrCode(), SQLITE_CANTOPEN);
    EXPECT_EQ(folder.getDB(), nullptr);
    EXPECT_EQ(folder.ExecCmd("SELECT 1"), SQLITE_CANTOPEN);

    test::WriteTextFile(kPath, std::string(4096, 'x'));
    EXPECT_EQ(handler_.connect(), SQLITE_NOTADB);
    EXPECT_EQ(handler_.getDB(), nullptr);

    DBHandler wrong("/tmp/wrong.db", "no SQL");
    EXPECT_EQ(wrong.connect(), SQLITE_ERROR);
    EXPECT_EQ(DBHandler("/tmp/unused.db", "").ExecCmd("SELECT 1"), SQLITE_MISUSE);
}

TEST_F(Handler, ListsRunAsAWholeOrUpToTheFailure) {
    ASSERT_EQ(handler_.connect(), 0);
    const SQLCmd failing =
        Commands({"INSERT INTO t VALUES(1)", "INSERT INTO t VALUES(1)", "INSERT INTO t VALUES(2)"});
    EXPECT_EQ(handler_.exeCmds(failing, true), SQLITE_CONSTRAINT);
    EXPECT_EQ(handler_.getErrCode(), SQLITE_CONSTRAINT);
    EXPECT_THAT(test::RunOnFile(kPath, "SELECT a FROM t"), IsEmpty());
    EXPECT_EQ(handler_.exeCmds(failing, false), SQLITE_CONSTRAINT);
    EXPECT_THAT(test::RunOnFile(kPath, "SELECT a FROM t"), ElementsAre("1"));

    SQLCmd joined = Commands({"DELETE FROM t"});
    joined += Commands({"INSERT INTO t VALUES(3)", "INSERT INTO t VALUES(4)"});
    joined += joined;
    EXPECT_EQ(handler_.exeCmds(joined, true), 0);
    EXPECT_THAT(test::RunOnFile(kPath, "SELECT a FROM t"), ElementsAre("3", "4"));
    EXPECT_EQ(handler_.exeCmds(SQLCmd(), true), 0);
}

TEST_F(Handler, WaitsForABusyFileAsLongAsTold) {
    DBHandler writer(kPath, kScript);
    ASSERT_EQ(writer.connect(), 0);
    ASSERT_EQ(handler_.connect(), 0);
    ASSERT_EQ(writer.ExecCmd("BEGIN IMMEDIATE"), 0);
    handler_.setBusyTimeout(0);
    EXPECT_EQ(handler_.ExecCmd("INSERT INTO t VALUES(1)"), SQLITE_BUSY);
    ASSERT_EQ(writer.ExecCmd("COMMIT"), 0);
    EXPECT_EQ(handler_.ExecCmd("INSERT INTO t VALUES(1)"), 0);
}

TEST_F(Handler, StaysOpenForAStatement) {
    ASSERT_EQ(handler_.connect(), 0);
    sqlite3_stmt* statement = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(handler_.getDB(), "SELECT a FROM t", -1, &statement, nullptr), 0);
    EXPECT_EQ(handler_.disconnect(), SQLITE_BUSY);
    EXPECT_NE(handler_.getDB(), nullptr);
    sqlite3_finalize(statement);
    EXPECT_EQ(handler_.disconnect(), 0);
}

}  // namespace
