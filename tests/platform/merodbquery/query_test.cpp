#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <merodbquery/insert_query.h>
#include <merodbquery/select_query.h>

#include <memory>
#include <string>
#include <vector>

namespace {

struct Record {
    std::string text;
    long long number = 0;
};

}  // namespace

namespace soci {

template <>
struct type_conversion<Record> {
    using base_type = values;

    static void from_base(const values& row, indicator /*whole*/, Record& record) {
        record.text = row.get<std::string>("a");
        record.number = row.get<int>("n");
    }
    static void to_base(const Record& record, values& row, indicator& whole) {
        row.set("n", record.number);
        row.set("a", record.text);
        row.set("unused", 1);
        whole = i_ok;
    }
};

}  // namespace soci

namespace {

using merodbquery::Condition;
using merodbquery::InsertQuery;
using merodbquery::SelectQuery;
using merodbquery::Session;
using testing::ElementsAre;
using testing::HasSubstr;

class QueryTest : public testing::Test {
 protected:
    QueryTest() { session_.RawQuery("CREATE TABLE t(a TEXT UNIQUE, n INTEGER)"); }

    bool Insert(const Record& record) {
        InsertQuery query(session_, "main.t");
        query.SetInsertAll({"a", "n"});
        query.Bind(soci::use(record));
        return query.Execute();
    }

    Session session_ = Session::SQLite(":memory:");
};

TEST_F(QueryTest, InsertedTextsComeBackAsTheyWere) {
    const std::vector<std::string> texts = {
        "plain",          "",           "'); DROP TABLE t; --",   "\"a\"",
        ":a ? $1 @n",     "%_\\",       std::string("a\0b", 3),   "Größe 🐟",
        "\xff not UTF-8", "line\nfeed", std::string(100000, 'x'),
    };
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_TRUE(Insert({texts[i], static_cast<long long>(i)})) << texts[i];
    }
    SelectQuery query(session_, "t");
    Record record;
    query.Bind(soci::into(record));
    query.OrderBy("n", SelectQuery::ASC);
    query.ExecuteWithoutPreFetch();
    std::vector<std::string> found;
    while (query.Fetch()) {
        found.push_back(record.text);
    }
    EXPECT_EQ(texts, found);
}

TEST_F(QueryTest, AFailedInsertIsFalseAndSaysWhy) {
    struct Case {
        const char* name;
        const char* table;
        std::vector<std::string> columns;
        const char* error;
    } const cases[] = {
        {"constraint", "t", {"a", "n"}, "UNIQUE constraint failed"},
        {"missing table", "nowhere", {"a", "n"}, "no such table"},
        {"missing column", "t", {"a", "unused"}, "no column named unused"},
        {"no columns", "t", {}, "syntax error"},
        {"no name for a table", "t; DROP TABLE t", {"a"}, "not the name"},
        {"no name for a column", "t", {"a) VALUES('x') --"}, "not the name"},
    };
    ASSERT_TRUE(Insert({"there", 1}));
    const Record record{"there", 2};
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        InsertQuery query(session_, row.table);
        query.SetInsertAll(row.columns);
        query.Bind(soci::use(record));
        EXPECT_FALSE(query.Execute());
        EXPECT_THAT(query.ErrorText(), HasSubstr(row.error));
    }
    session_.Disconnect();
    EXPECT_FALSE(Insert({"late", 1}));
}

TEST_F(QueryTest, OneInsertRunsAgainWithNewValues) {
    Record record{"first", 1};
    InsertQuery query(session_, "t");
    query.SetInsertAll({"n", "a"});
    query.Bind(soci::use(record));
    EXPECT_TRUE(query.Execute());
    EXPECT_FALSE(query.Execute());
    record.text = "second";
    EXPECT_TRUE(query.Execute());
    EXPECT_EQ("", query.ErrorText());
    int count = 0;
    session_.GetRawSession() << "SELECT COUNT(*) FROM t", soci::into(count);
    EXPECT_EQ(2, count);
}

TEST_F(QueryTest, InsertsIntoOneTableKeepTheirOwnValues) {
    Record mine{"", 1};
    Record yours{"", 2};
    auto first = std::make_unique<InsertQuery>(session_, "t");
    InsertQuery second(session_, "t");
    for (InsertQuery* query : {first.get(), &second}) {
        query->SetInsertAll({"a", "n"});
        query->Bind(query == &second ? soci::use(yours) : soci::use(mine));
    }
    for (const char* round : {"early", "late"}) {
        mine.text = std::string(round) + " mine";
        yours.text = std::string(round) + " yours";
        EXPECT_TRUE(first->Execute()) << first->ErrorText();
        EXPECT_TRUE(second.Execute()) << second.ErrorText();
    }
    first.reset();
    first = std::make_unique<InsertQuery>(session_, "t");  // where the other was, perhaps
    first->SetInsertAll({"a", "n"});
    const Record last{"last", 3};
    first->Bind(soci::use(last));
    EXPECT_TRUE(first->Execute()) << first->ErrorText();

    std::vector<std::string> rows(10);
    session_.GetRawSession() << "SELECT a || n FROM t ORDER BY rowid", soci::into(rows);
    EXPECT_THAT(rows,
                ElementsAre("early mine1", "early yours2", "late mine1", "late yours2", "last3"));
}

TEST_F(QueryTest, OneSelectCountsAndThenReads) {
    for (int i = 1; i <= 4; ++i) {
        ASSERT_TRUE(Insert({"row " + std::to_string(i), i}));
    }
    SelectQuery query(session_, "main.t");
    query.Where(Condition::ConditionFactory("n", ">", 1));
    int count = 0;
    query.SetColumns({"COUNT(*)"});
    query.Bind(soci::into(count));
    EXPECT_FALSE(query.Fetch()) << "not run yet";
    query.ExecuteWithoutPreFetch();
    EXPECT_EQ(0, count) << "fetched early";
    EXPECT_TRUE(query.Fetch());
    EXPECT_FALSE(query.Fetch());
    EXPECT_EQ(3, count);

    query.SetColumns({});
    Record record;
    query.Bind(soci::into(record));
    query.OrderBy("n", SelectQuery::DESC);
    query.Limit(2);
    query.ExecuteWithoutPreFetch();
    SelectQuery moved(std::move(query));
    std::vector<std::string> found;
    while (moved.Fetch()) {
        found.push_back(record.text);
    }
    EXPECT_THAT(found, ElementsAre("row 4", "row 3"));
    EXPECT_EQ("SELECT * FROM main.t WHERE n > ? ORDER BY n DESC LIMIT 2", moved.GetQuery());
}

TEST_F(QueryTest, ExecuteTakesTheFirstRow) {
    ASSERT_TRUE(Insert({"one", 1}));
    ASSERT_TRUE(Insert({"two", 2}));
    SelectQuery query(session_, "t");
    std::string text;
    int number = 0;
    soci::indicator indicator = soci::i_null;
    query.SetColumns({"a", "n"});
    query.Bind(soci::into(text));
    query.Bind(soci::into(number, indicator));
    query.OrderBy("n", SelectQuery::ASC);
    EXPECT_TRUE(query.Execute());
    EXPECT_EQ("one", text);
    EXPECT_EQ(1, number);
    EXPECT_TRUE(query.Fetch());
    EXPECT_EQ("two", text);
    EXPECT_FALSE(query.Fetch());
}

TEST_F(QueryTest, FailuresOfAFetchReachTheCaller) {
    session_.RawQuery("INSERT INTO t VALUES(NULL, 1)");
    SelectQuery query(session_, "t");
    Record record;
    query.Bind(soci::into(record));
    query.ExecuteWithoutPreFetch();
    EXPECT_THROW(query.Fetch(), soci::soci_error);

    SelectQuery wrong(session_, "nowhere");
    wrong.Bind(soci::into(record));
    EXPECT_THROW(wrong.ExecuteWithoutPreFetch(), soci::soci_error);
    EXPECT_FALSE(wrong.Fetch());
    EXPECT_THROW(SelectQuery(session_, "not important").GetQuery(), soci::soci_error);
}

TEST_F(QueryTest, FetchesNothingAfterDisconnect) {
    ASSERT_TRUE(Insert({"one", 1}));
    SelectQuery query(session_, "t");
    Record record;
    query.Bind(soci::into(record));
    query.ExecuteWithoutPreFetch();
    session_.Disconnect();
    EXPECT_FALSE(query.Fetch());
    EXPECT_FALSE(query.Execute());
}

}  // namespace
