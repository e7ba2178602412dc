#include "utils/db_command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/syslog_socket.h"

namespace serverlog::utils {
namespace {

using Texts = std::vector<std::string>;

class DbCommand : public testing::Test {
 protected:
    merodbquery::Session session_ = merodbquery::Session::SQLite(":memory:");
    test::SyslogSocket log_;
};

TEST_F(DbCommand, RunsAScriptUpToTheFirstFailure) {
    EXPECT_TRUE(ExecMultipleQuery(session_, ""));
    EXPECT_TRUE(ExecMultipleQuery(session_, " ;\n; CREATE TABLE t (a)\n;;CREATE TABLE u (a)"));
    EXPECT_TRUE(log_.TakeErrors().empty());
    EXPECT_FALSE(ExecMultipleQuery(
        session_, "BEGIN; DROP TABLE t;\n\tNONSENSE '100%s' ;\nDROP TABLE u; COMMIT"));
    EXPECT_EQ(log_.TakeErrors(), (Texts{"exec query error: NONSENSE '100%s'"}));
    EXPECT_TRUE(session_.RawQuery("ROLLBACK")) << "the transaction stayed open";
    EXPECT_TRUE(session_.RawQuery("INSERT INTO t SELECT * FROM u"));
}

TEST_F(DbCommand, NamesUpToTheColumnsAskedFor) {
    session_.RawQuery("CREATE TABLE t (a, Bc INTEGER, \"ö d\" TEXT)");
    EXPECT_EQ(EnumColumns(session_, "t", 32), (Texts{"a", "Bc", "ö d"}));
    EXPECT_EQ(EnumColumns(session_, "t", 3), (Texts{"a", "Bc", "ö d"}));
    EXPECT_EQ(EnumColumns(session_, "t", 2), (Texts{"a", "Bc"}));
    EXPECT_EQ(EnumColumns(session_, "none", 32), Texts());
    EXPECT_TRUE(ColumnExist(session_, "t", "Bc", 32));
    EXPECT_FALSE(ColumnExist(session_, "t", "bc", 32));
    EXPECT_FALSE(ColumnExist(session_, "t", "Bc", 1));
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(DbCommand, SaysWhyItHasNoNames) {
    session_.RawQuery("CREATE TABLE t (a)");
    session_.RawQuery("BEGIN");
    EXPECT_EQ(EnumColumns(session_, "t", 32), Texts());
    const Texts lines = log_.TakeErrors();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].rfind("Enum column error: ", 0), 0U) << lines[0];
}

}  // namespace
}  // namespace serverlog::utils
