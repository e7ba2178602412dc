#include <gtest/gtest.h>
#include <merodbquery/session.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "support/child.h"
#include "support/signpost.h"
#include "support/sqlite_file.h"
#include "support/store_lock.h"

namespace {

using merodbquery::Session;
using test::RunOnFile;

class SessionTest : public testing::Test {
 protected:
    SessionTest() { std::filesystem::create_directory(kFolder); }
    ~SessionTest() override { std::filesystem::remove_all(kFolder); }

    const std::string kFolder = "/tmp/session";
    const std::string kPath = kFolder + "/store.db";
};

TEST_F(SessionTest, OpensEveryFileName) {
    const std::string names[] = {
        "with blank.db",         " blanks around ", "it's.db",
        "say \"hi\".db",         "a=b.db",          "dbname=x timeout=1 readonly=true",
        "semi;colon.db",         "percent%41.db",   "question?mode=memory",
        "back\\slash.db",        "line\nfeed.db",   "Zürich Größe 日本語 🐟.db",
        "not UTF-8 \xff\xfe.db", ":memory:.db",
    };
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string path = kFolder + "/" + name;
        Session session = Session::SQLite(path);
        EXPECT_TRUE(session.Good());
        EXPECT_TRUE(session.RawQuery("CREATE TABLE t(a)"));
        EXPECT_TRUE(std::filesystem::remove(path)) << "the file lies elsewhere";
    }
    EXPECT_TRUE(std::filesystem::is_empty(kFolder));
}

TEST_F(SessionTest, TakesARelativePathOnceAndLiterally) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(kFolder);
    Session session = Session::SQLite("file:store.db?mode=memory");
    std::filesystem::current_path(before);
    EXPECT_TRUE(session.RawQuery("CREATE TABLE t(a)"));

    std::filesystem::remove(kFolder + "/file:store.db?mode=memory");
    EXPECT_TRUE(session.RawQuery("CREATE TABLE t(a)"));
    EXPECT_TRUE(std::filesystem::exists(kFolder + "/file:store.db?mode=memory"));
}

TEST_F(SessionTest, IsNotGoodWhenItCannotBeOpened) {
    const std::string paths[] = {
        "",
        kFolder,
        kFolder + "/missing/store.db",
        kPath + std::string("\0.db", 4),
        kFolder + "/" + std::string(300, 'x'),
    };
    for (const std::string& path : paths) {
        SCOPED_TRACE(path);
        Session session = Session::SQLite(path);
        EXPECT_FALSE(session.Good());
        EXPECT_FALSE(session.RawQuery("SELECT 1"));
        EXPECT_THROW(session.GetRawSession() << "SELECT 1", soci::soci_error);
        EXPECT_FALSE(Session(session).Good());
        session.Disconnect();
    }
    EXPECT_TRUE(std::filesystem::is_empty(kFolder));
}

TEST_F(SessionTest, RawQueryRunsOneStatement) {
    struct Case {
        const char* name;
        std::string statement;
        bool result;
        const char* rows_afterwards;
    } const cases[] = {
        {"a change", "INSERT INTO t VALUES(2)", true, "1,2"},
        {"ended by a semicolon", "INSERT INTO t VALUES(2);\n ", true, "1,2"},
        {"a comment behind", "INSERT INTO t VALUES(2); -- more", true, "1,2"},
        {"a pragma with a row", "PRAGMA journal_mode = WAL", true, "1"},
        {"many rows, each a change", "DELETE FROM t RETURNING a", true, ""},
        {"two statements", "INSERT INTO t VALUES(2); INSERT INTO t VALUES(3)", false, "1"},
        {"a wrong second one", "INSERT INTO t VALUES(2); nonsense", false, "1"},
        {"cut by a NUL", std::string("DELETE FROM t\0 WHERE a = 2", 26), false, "1"},
        {"wrong", "INSERT INTO", false, "1"},
        {"against a constraint", "INSERT INTO t VALUES(1)", false, "1"},
        {"none", "", false, "1"},
        {"a comment only", "-- nothing", false, "1"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        const std::string path = kFolder + "/" + row.name;
        RunOnFile(path, "CREATE TABLE t(a UNIQUE); INSERT INTO t VALUES(1)");
        EXPECT_EQ(row.result, Session::SQLite(path).RawQuery(row.statement));
        EXPECT_EQ(row.rows_afterwards,
                  RunOnFile(path, "SELECT coalesce(group_concat(a), '') FROM t").at(0));
    }
}

TEST_F(SessionTest, CopiesShareTheConnection) {
    Session session = Session::SQLite(kPath);
    Session copy = session;
    EXPECT_TRUE(session.RawQuery("CREATE TEMPORARY TABLE own(a)"));
    EXPECT_TRUE(copy.RawQuery("INSERT INTO own VALUES(1)"));
    EXPECT_EQ(&session.GetRawSession(), &copy.GetRawSession());

    copy.Disconnect();
    EXPECT_FALSE(session.Good());
    EXPECT_FALSE(session.RawQuery("SELECT 1"));
    EXPECT_THROW(session.GetRawSession() << "SELECT 1", soci::soci_error);
    session.Disconnect();
}

TEST_F(SessionTest, DisconnectCreatesNothing) {
    Session session = Session::SQLite(kPath);
    std::filesystem::remove(kPath);
    session.Disconnect();
    EXPECT_FALSE(session.Good());
    EXPECT_FALSE(std::filesystem::exists(kPath));
}

TEST_F(SessionTest, WaitsForAnotherProcess) {
    RunOnFile(kPath, "CREATE TABLE t(a)");
    const test::Signpost locked;
    const test::Signpost start;
    test::Child locker([&] {
        {
            const test::StoreLock lock(kPath);
            locked.Show();
            start.Await();
            while (test::StateOf(getppid()) != 'S') {
            }
        }
        return std::string("released while the other slept");
    });
    locked.Await();
    Session session = Session::SQLite(kPath);
    start.Show();
    EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES(1)"));
    EXPECT_EQ("released while the other slept", locker.Wait());

    int milliseconds = 0;
    session.GetRawSession() << "PRAGMA busy_timeout", soci::into(milliseconds);
    EXPECT_EQ(60000, milliseconds);
}

}  // namespace
