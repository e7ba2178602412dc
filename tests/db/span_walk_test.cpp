// What is read in spans has to be what the plain statement gives.

#include "db/span_walk.h"

#include <gtest/gtest.h>
#include <mailserver-log/db/union_all_select.h>
#include <soci/soci.h>

#include <string>
#include <vector>

#include "db/run_function.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_lock.h"
#include "support/syslog_socket.h"

namespace serverlog::db {
namespace {

using test::kSpool;
using test::RunOnFile;
using Rows = std::vector<std::string>;

const std::string kMain = kSpool + "main.db";
const std::string kOld = kSpool + "old.db";
const std::string kAttach = "ATTACH DATABASE '" + kOld + "' AS DB1";

/// A table of `rows` rows, more than two spans of them, whose dates are what `date` gives for i.
void Fill(const std::string& path, const std::string& date, int rows = 40'000) {
    RunOnFile(path,
              "CREATE TABLE t (id TEXT, date INTEGER); "
              "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                  std::to_string(rows) + ") INSERT INTO t SELECT '" + (path == kMain ? "m" : "o") +
                  "' || i, " + date + " FROM n; CREATE INDEX date_idx ON t (date)");
}

class SpanWalk : public testing::Test {
 protected:
    SpanWalk() { test::EmptySpool(); }

    /// The union of both tables, which fetches the id of each row.
    UnionAllSelectQuery Union(UnionBase::Order order) {
        session_ = merodbquery::Session::SQLite(kMain);
        session_.RawQuery(kAttach);
        UnionAllSelectQuery query(session_);
        for (const char* table : {"main.t", "DB1.t"}) {
            SelectQueryExpose select(session_, table);
            query.UnionAll(select);
        }
        query.OrderBy("date", order);
        query.Bind(soci::into(id_));
        return query;
    }

    Rows Fetched(UnionAllSelectQuery& query) {
        query.ExecuteWithoutPreFetch();
        Rows rows;
        while (query.Fetch()) {
            rows.push_back(id_);
        }
        EXPECT_EQ(query.ErrorText(), "");
        EXPECT_FALSE(query.Fetch()) << "behind the end";
        return rows;
    }

    void ExpectPlainRows() {
        for (const char* order : {"DESC", "ASC"}) {
            Rows plain = RunOnFile(kMain, kAttach +
                                              "; SELECT * FROM main.t UNION ALL SELECT * "
                                              "FROM DB1.t ORDER BY date " +
                                              order);
            for (std::string& row : plain) {
                row.resize(row.find('|'));
            }
            auto query = Union(order == std::string("ASC") ? UnionBase::ASC : UnionBase::DESC);
            EXPECT_TRUE(Fetched(query) == plain) << order;
            EXPECT_TRUE(Fetched(query) == plain) << order << ", run again";
        }
    }

    bool IsWalked(const std::string& column) {
        auto query = Union(UnionBase::DESC);
        return internal::SpanWalk::Begin(
                   session_,
                   {{"SELECT * FROM main.t", "main", "t"}, {"SELECT * FROM DB1.t", "DB1", "t"}},
                   {column, UnionBase::DESC}, query) != nullptr;
    }

    merodbquery::Session session_ = merodbquery::Session::SQLite(":memory:");
    std::string id_;
};

TEST_F(SpanWalk, GivesTheRowsOfThePlainStatement) {
    struct {
        const char* name;
        const char* main;
        const char* old;
        const char* further;  // changes to the main file
    } const data[] = {
        {"one behind the other", "60000 + i / 7", "i / 7", ""},
        {"with one date in both", "50000 - 1 + i", "10000 + i", ""},
        {"the other way round", "i / 7", "60000 + i / 7", ""},
        {"some out of their order", "60000 + i", "i - i % 1000 * (i % 3 = 0)",
         "UPDATE t SET date = date - 40 WHERE id IN ('m7', 'm33000', 'm39990')"},
        {"with gaps", "60000 + i", "i", "DELETE FROM t WHERE rowid % 20000 = 9"},
        {"mixed", "i / 3", "i / 2", ""},
        {"mixed in some spans", "30000 + i / 3", "i", ""},
        {"any order", "i * 7919 % 5000", "i * 104729 % 5000", ""},
        {"all on one date", "7", "7", ""},
        {"far apart", "9000000000000000000 + i", "-9000000000000000000 - i", ""},
        {"no whole numbers", "100000 + i * 0.25", "'text' || i % 9", ""},
        {"one table empty", "i", "i", "DELETE FROM t"},
    };
    for (const auto& [name, main, old, further] : data) {
        SCOPED_TRACE(name);
        test::EmptySpool();
        Fill(kMain, main);
        Fill(kOld, old);
        RunOnFile(kMain, further);
        ExpectPlainRows();
        EXPECT_TRUE(IsWalked("date"));
    }
}

TEST_F(SpanWalk, IsNotBegunWithoutUse) {
    Fill(kMain, "i");
    Fill(kOld, "i");
    EXPECT_FALSE(IsWalked("id")) << "no index";
    RunOnFile(kOld, "INSERT INTO t VALUES ('none', NULL)");
    EXPECT_FALSE(IsWalked("date")) << "a row without a date";
    ExpectPlainRows();
    test::EmptySpool();
    Fill(kMain, "i", 10);
    Fill(kOld, "i", 10);
    EXPECT_FALSE(IsWalked("date")) << "few rows";
}

TEST_F(SpanWalk, KeepsWritersOutUntilItsEnd) {
    Fill(kMain, "i");
    Fill(kOld, "i");
    auto writer = merodbquery::Session::SQLite(kOld);
    writer.RawQuery("PRAGMA busy_timeout = 0");
    const auto write = [&writer] { return writer.RawQuery("DELETE FROM t WHERE date = 1"); };
    {
        auto query = Union(UnionBase::DESC);
        query.ExecuteWithoutPreFetch();
        ASSERT_TRUE(query.Fetch());
        EXPECT_FALSE(write());
        while (query.Fetch()) {
        }
        EXPECT_TRUE(write());
        query.ExecuteWithoutPreFetch();
        ASSERT_TRUE(query.Fetch());
    }
    EXPECT_TRUE(write()) << "the query went before its rows ended";
}

TEST_F(SpanWalk, EndsAtARowThatCannotBeTaken) {
    Fill(kMain, "i + 50000");
    Fill(kOld, "i");
    RunOnFile(kOld, "UPDATE t SET id = NULL WHERE date = 30000");
    test::SyslogSocket log;
    auto query = Union(UnionBase::DESC);
    query.ExecuteWithoutPreFetch();
    int rows = 0;
    while (query.Fetch()) {
        ++rows;
    }
    EXPECT_EQ(rows, 50'000);
    EXPECT_NE(query.ErrorText(), "");
    EXPECT_EQ(log.TakeErrors().size(), 1U);
}

TEST_F(SpanWalk, FailsAtTheFirstRowOfALockedStore) {
    Fill(kMain, "i");
    Fill(kOld, "i");
    test::SyslogSocket log;
    auto query = Union(UnionBase::DESC);
    session_.RawQuery("PRAGMA busy_timeout = 0");
    const test::StoreLock lock(kOld);
    query.ExecuteWithoutPreFetch();
    EXPECT_FALSE(query.Fetch());
    EXPECT_EQ(log.TakeErrors().size(), 1U);
    EXPECT_NE(query.ErrorText(), "");
}

TEST(BoundsOfRun, AreThoseOfRowsInOrder) {
    auto session = merodbquery::Session::SQLite(":memory:");
    internal::RegisterRunFunction(session);
    const std::pair<const char*, const char*> cases[] = {
        {"(9, 5)", "5 AND 5"},
        {"(9, 5), (9, 6), (10, 7)", "5 AND 7"},
        {"(-3, -1), (-2, 0)", "-1 AND 0"},
        {"(9, 7), (9, 6)", "none"},
        {"(9, 9223372036854775807), (9, -9223372036854775807 - 1)", "none"},
        {"(9, 5), (9, 7)", "none"},
        {"(9, 5), (9, 5)", "none"},
        {"(9, 5), (8, 6)", "none"},
        {"(9, 5), (8, 6), (9, 7)", "none"},
        {"(9, 5), (9.5, 6)", "none"},
        {"('9', 5)", "none"},
    };
    for (const auto& [rows, bounds] : cases) {
        std::string found;
        session.GetRawSession() << "SELECT COALESCE(bounds_of_run(column1, column2), 'none') FROM "
                                   "(VALUES " +
                                       std::string(rows) + ")",
            soci::into(found);
        EXPECT_EQ(found, bounds) << rows;
    }
}

}  // namespace
}  // namespace serverlog::db
