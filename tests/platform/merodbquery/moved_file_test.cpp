// What a session does when its file goes away from under it.

#include <gmock/gmock.h>
#include <merodbquery/insert_query.h>
#include <merodbquery/select_query.h>
#include <merodbquery/session.h>

#include <filesystem>
#include <functional>
#include <string>

#include "support/child.h"
#include "support/sqlite_file.h"
#include "support/table.h"

namespace {

using merodbquery::Condition;
using merodbquery::InsertQuery;
using merodbquery::SelectQuery;
using merodbquery::Session;
using test::RunOnFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class MovedFileTest : public testing::Test {
 protected:
    MovedFileTest() {
        fs::create_directories(kFolder);
        RunOnFile(kPath, "CREATE TABLE t(a); INSERT INTO t VALUES('old')");
        RunOnFile(kOther, "CREATE TABLE t(a); INSERT INTO t VALUES('other')");
    }
    ~MovedFileTest() override { fs::remove_all("/tmp/moved"); }

    static std::vector<std::string> Rows(const std::string& path) {
        return RunOnFile(path, "SELECT a FROM t");
    }

    const std::string kFolder = "/tmp/moved/folder";
    const std::string kPath = kFolder + "/store.db";
    const std::string kAway = kFolder + "/away.db";
    const std::string kOther = kFolder + "/other.db";
};

TEST_F(MovedFileTest, EveryUseOfEveryCopyGoesToThePath) {
    const test::Table<const char*, std::function<void(Session&)>> cases = {
        {"raw query",
         [](Session& session) { EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('new')")); }},
        {"raw session",
         [](Session& session) { session.GetRawSession() << "INSERT INTO t VALUES('new')"; }},
        {"prepared query",
         [](Session& session) {
             int milliseconds = 0;
             session.GetRawSession() << "PRAGMA busy_timeout", soci::into(milliseconds);
             EXPECT_EQ(60000, milliseconds) << "as before";
             std::string text;
             SelectQuery query(session, "t");
             query.Bind(soci::into(text));
             query.Where(Condition::HasSubstring("a", "OTHER"));
             EXPECT_TRUE(query.Execute()) << query.ErrorText();
             EXPECT_EQ("other", text);
             EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('new')"));
         }},
    };
    for (const auto& [name, use] : cases) {
        SCOPED_TRACE(name);
        const std::string path = kFolder + "/" + name;
        fs::copy_file(kPath, path);
        Session session = Session::SQLite(path);
        EXPECT_TRUE(session.RawQuery("SELECT * FROM t"));
        Session copy = session;
        fs::rename(path, kAway);
        fs::copy_file(kOther, path);

        use(copy);
        EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('again')"));
        EXPECT_THAT(Rows(path), ElementsAre("other", "new", "again"));
        EXPECT_THAT(Rows(kAway), ElementsAre("old"));
    }
}

TEST_F(MovedFileTest, AnInsertThatIsKeptGoesToThePath) {
    Session session = Session::SQLite(kPath);
    InsertQuery insert(session, "t");
    insert.SetInsertAll({"a"});
    const auto add = [&insert](const std::string& text) {
        insert.Bind(soci::use(text, "a"));
        return insert.Execute();
    };
    EXPECT_TRUE(add("kept"));
    fs::rename(kPath, kAway);
    fs::copy_file(kOther, kPath);
    EXPECT_TRUE(add("new"));
    EXPECT_TRUE(add("again"));
    EXPECT_THAT(Rows(kPath), ElementsAre("other", "new", "again"));
    EXPECT_THAT(Rows(kAway), ElementsAre("old", "kept"));

    RunOnFile(kPath, "ALTER TABLE t RENAME TO away");
    EXPECT_FALSE(add("lost"));
    EXPECT_THAT(insert.ErrorText(), testing::HasSubstr("no such table"));
    RunOnFile(kPath, "ALTER TABLE away RENAME TO t");
    EXPECT_TRUE(add("behind")) << insert.ErrorText();
    EXPECT_THAT(Rows(kPath), ElementsAre("other", "new", "again", "behind"));
    session.Disconnect();
    EXPECT_FALSE(add("closed"));
}

TEST_F(MovedFileTest, ARemovedFileIsMadeAgainEmpty) {
    for (const bool rename : {true, false}) {
        SCOPED_TRACE(rename ? "renamed" : "removed");
        const std::string path = kFolder + (rename ? "/renamed" : "/removed");
        fs::copy_file(kPath, path);
        Session session = Session::SQLite(path);
        EXPECT_TRUE(session.RawQuery("SELECT * FROM t"));
        rename ? fs::rename(path, kAway) : static_cast<void>(fs::remove(path));

        EXPECT_FALSE(session.RawQuery("INSERT INTO t VALUES('new')")) << "was lost";
        EXPECT_TRUE(session.Good());
        EXPECT_TRUE(session.RawQuery("CREATE TABLE t(a)"));
        EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('new')"));
        EXPECT_THAT(Rows(path), ElementsAre("new"));
    }
    EXPECT_THAT(Rows(kAway), ElementsAre("old"));
}

TEST_F(MovedFileTest, IsNotGoodWhileThePathCannotBeOpened) {
    Session session = Session::SQLite(kPath);
    EXPECT_TRUE(session.RawQuery("ATTACH DATABASE '" + kOther + "' AS other"));
    fs::rename(kFolder, "/tmp/moved/elsewhere");

    EXPECT_FALSE(session.RawQuery("INSERT INTO t VALUES('new')"));
    EXPECT_THROW(session.GetRawSession() << "INSERT INTO t VALUES('new')", soci::soci_error);
    EXPECT_FALSE(session.Good());
    SelectQuery query(session, "t");
    EXPECT_FALSE(query.Execute());
    EXPECT_THAT(query.ErrorText(), testing::HasSubstr("unable to open database file"));

    fs::rename("/tmp/moved/elsewhere", kFolder);
    EXPECT_TRUE(session.Good());
    EXPECT_TRUE(session.RawQuery("INSERT INTO t SELECT a FROM other.t"));
    EXPECT_THAT(Rows(kPath), ElementsAre("old", "other"));
}

TEST_F(MovedFileTest, ATransactionEndsWhereItBegan) {
    Session session = Session::SQLite(kPath);
    EXPECT_TRUE(session.RawQuery("BEGIN"));
    EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('first')"));
    fs::rename(kPath, kAway);
    fs::rename(kOther, kPath);
    EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('second')"));
    EXPECT_TRUE(session.RawQuery("COMMIT"));
    EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('third')"));

    EXPECT_THAT(Rows(kAway), ElementsAre("old", "first", "second"));
    EXPECT_THAT(Rows(kPath), ElementsAre("other", "third"));
}

TEST_F(MovedFileTest, AttachedSchemasComeAlong) {
    const std::string attached = kFolder + "/it's attached.db";
    fs::copy_file(kOther, attached);
    Session session = Session::SQLite(kPath);
    EXPECT_TRUE(session.RawQuery("ATTACH DATABASE \"" + attached + "\" AS DB1"));

    fs::rename(kPath, kAway);
    fs::copy_file(kAway, kPath);
    EXPECT_TRUE(session.RawQuery("INSERT INTO DB1.t VALUES('after main')"));
    EXPECT_THAT(Rows(attached), ElementsAre("other", "after main"));

    fs::rename(attached, kFolder + "/attached away.db");
    fs::copy_file(kOther, attached);
    EXPECT_TRUE(session.RawQuery("INSERT INTO DB1.t VALUES('after DB1')"));
    EXPECT_THAT(Rows(attached), ElementsAre("other", "after DB1"));

    fs::remove(attached);
    EXPECT_FALSE(session.RawQuery("INSERT INTO DB1.t VALUES('nowhere')"));
    EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('main lives on')"));
    EXPECT_FALSE(fs::exists(attached)) << "an empty file of that name is nobody's wish";
}

TEST_F(MovedFileTest, TheWriteAheadLogStaysWithItsFile) {
    for (const bool replace : {true, false}) {
        SCOPED_TRACE(replace ? "replaced" : "renamed");
        const std::string path = kFolder + (replace ? "/replaced" : "/renamed");
        fs::copy_file(kPath, path);
        Session session = Session::SQLite(path);
        EXPECT_TRUE(session.RawQuery("PRAGMA journal_mode = WAL"));
        EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('logged')"));
        fs::rename(path, kAway);
        if (replace) {
            RunOnFile(kOther, "PRAGMA journal_mode = WAL");
            fs::copy_file(kOther, path);
        }
        EXPECT_TRUE(session.RawQuery("CREATE TABLE IF NOT EXISTS t(a)"));

        session.Disconnect();
        EXPECT_THAT(Rows(kAway), ElementsAre("old", "logged"));
        EXPECT_THAT(Rows(path), replace ? ElementsAre("other")
                                        : testing::Matcher<std::vector<std::string>>(IsEmpty()));
    }
}

TEST_F(MovedFileTest, AnUnfinishedStatementReadsOnAndWritesNoMore) {
    // Written ahead, since SQLite itself lets no moved file be written in the other modes.
    RunOnFile(kPath, "PRAGMA journal_mode = WAL; INSERT INTO t VALUES('old too')");
    Session session = Session::SQLite(kPath);
    std::string text;
    SelectQuery query(session, "t");
    query.Bind(soci::into(text));
    query.ExecuteWithoutPreFetch();
    ASSERT_TRUE(query.Fetch());
    soci::statement write = (session.GetRawSession().prepare << "INSERT INTO t VALUES('late')");

    fs::rename(kPath, kAway);
    fs::rename(kOther, kPath);
    EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('new')"));
    ASSERT_TRUE(query.Fetch());
    EXPECT_EQ("old too", text);
    EXPECT_FALSE(query.Fetch());
    EXPECT_THROW(write.execute(true), soci::soci_error);

    EXPECT_THAT(Rows(kAway), ElementsAre("old", "old too"));
    EXPECT_THAT(Rows(kPath), ElementsAre("other", "new"));
}

TEST_F(MovedFileTest, TheTargetOfALinkIsNotMade) {
    const std::string link = kFolder + "/link";
    fs::create_symlink(kPath, link);
    Session session = Session::SQLite(link);
    EXPECT_TRUE(session.RawQuery("SELECT * FROM t"));
    fs::rename(kPath, kAway);
    EXPECT_FALSE(session.RawQuery("INSERT INTO t VALUES('new')"));
    EXPECT_FALSE(fs::exists(kPath));

    fs::rename(kAway, kPath);
    EXPECT_TRUE(session.RawQuery("INSERT INTO t VALUES('new')"));
    EXPECT_THAT(Rows(kPath), ElementsAre("old", "new"));
}

TEST_F(MovedFileTest, AFileThatIsOutOfSightHasNotMoved) {
    SKIP_WITHOUT_SECOND_USER();
    fs::permissions(kFolder, fs::perms::owner_all);
    EXPECT_EQ("read", test::InChild([this]() -> std::string {
                  Session session = Session::SQLite(kPath);
                  if (!session.RawQuery("SELECT * FROM t")) {
                      return "not prepared";
                  }
                  test::SetIds(test::kOtherForGood, test::kOtherForGood);
                  return session.RawQuery("PRAGMA user_version") ? "read" : "lost";
              }));
}

}  // namespace
