#include <gtest/gtest.h>
#include <mailserver-log/db/crea_table.h>
#include <mailserver-log/db/union_all_select.h>

#include <string>

namespace serverlog::db {
namespace {

using merodbquery::Condition;

TEST(UnionBase, WritesItsClausesInTheOrderOfSql) {
    UnionBase base;
    merodbquery::PositionBinder binder;
    EXPECT_EQ(base.ComposeQuery(Condition::Null(), binder), "");
    base.Limit(1);
    base.OrderBy("c", UnionBase::DESC);
    base.Having(Condition::Equal("b", "x"));
    base.GroupBy("a");
    EXPECT_EQ(base.ComposeQuery(Condition::Null(), binder),
              " GROUP BY a HAVING b = ? ORDER BY c DESC LIMIT 1");
}

TEST(UnionAllSelectQuery, BindsTheValuesOfAllSelectsInTheirOrder) {
    auto session = merodbquery::Session::SQLite(":memory:");
    session.RawQuery("CREATE TABLE t (a TEXT, b TEXT)");
    session.RawQuery("INSERT INTO t VALUES ('1', 'x'), ('2', 'x'), ('2', 'y'), ('3', 'y')");
    UnionAllSelectQuery query(session);
    std::string a;
    std::string b;
    query.Bind(soci::into(a));
    query.Bind(soci::into(b));
    EXPECT_EQ(query.GetQuery(), "") << "no clause without a select";
    for (const char* wanted : {"1", "2"}) {
        SelectQueryExpose select(session, "t");
        select.Where(Condition::Equal("a", wanted) || Condition::Equal("a", "3"));
        query.UnionAll(select);
    }
    query.OrderBy("a", UnionBase::ASC);
    query.OrderBy("b", UnionBase::DESC);
    EXPECT_FALSE(query.Fetch()) << "not run";
    query.ExecuteWithoutPreFetch();
    std::string rows;
    while (query.Fetch()) {
        rows += a + b + " ";
    }
    EXPECT_EQ(rows, "1x 2y 2x 3y 3y ");
    EXPECT_EQ(query.ErrorText(), "");
}

TEST(InsertFields, AreWrittenAsAnInsertTakesThem) {
    EXPECT_EQ(internal::fields_to_str({"a", "b"}), "(a, b) ");
    EXPECT_EQ(internal::fields_to_values_str({"a", "b"}), " VALUES(:a, :b) ");
    EXPECT_EQ(internal::fields_to_str({}), "() ");
}

}  // namespace
}  // namespace serverlog::db
