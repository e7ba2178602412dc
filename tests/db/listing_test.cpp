#include <gtest/gtest.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <merodbquery/condition.h>

#include <string>
#include <tuple>
#include <vector>

#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/syslog_socket.h"
#include "support/table.h"

namespace serverlog::db {
namespace {

using merodbquery::Condition;
using test::kSpool;
using Dates = std::vector<int>;
using Names = std::vector<std::string>;

Dates DatesOf(const std::vector<record::MailLog>& rows) {
    Dates dates;
    for (const record::MailLog& row : rows) {
        dates.push_back(row.date);
    }
    return dates;
}

/// A mail log store with the dates 2, 4, 6, 8, 10 in its main schema and 1, 3, 5, 7, 9 in "old".
class Listing : public testing::Test {
 protected:
    Listing() {
        auto old = Provider(kSpool + "old.db").Get<MailLogDB>(false);
        for (int date = 1; date <= 10; ++date) {
            record::MailLog row;
            row.date = date;
            row.subject = date % 4 == 0 ? "Vierte Größe" : "other";
            (date % 2 == 0 ? store_ : old).MainTable().Create(row);
        }
        store_.Attach(kSpool + "old.db", "old");
    }

    MailLogTable& Table() { return store_.MainTable(); }

    static MailLogDB NewStore() {
        test::EmptySpool();
        return Provider(kSpool + "store.db").Get<MailLogDB>(false);
    }

    MailLogDB store_ = NewStore();
    const Names both_ = {"main", "old"};
    test::SyslogSocket log_;
};

TEST_F(Listing, ListsTheMainSchema) {
    EXPECT_EQ(DatesOf(Table().List()), (Dates{2, 4, 6, 8, 10}));
    const auto fourth = Condition::HasSubstring("subject", "GRÖSSE");
    EXPECT_EQ(DatesOf(Table().List(fourth)), (Dates{4, 8}));
    EXPECT_EQ(DatesOf(Table().List(fourth, "date", "DESC")), (Dates{8, 4}));
    EXPECT_EQ(DatesOf(Table().List(fourth, "date", "ASC")), (Dates{4, 8}));
    EXPECT_EQ(DatesOf(Table().List(fourth, "date", "asc")), (Dates{8, 4}));
    EXPECT_EQ(DatesOf(Table().List(fourth, "date", "")), (Dates{4, 8})) << "no order is set";
}

TEST_F(Listing, PagesFromTheNearerEnd) {
    const test::Table<int, int, Dates, Dates> rows = {
        {0, 5, {1, 2, 3, 4, 5}, {10, 9, 8, 7, 6}},
        {5, 5, {6, 7, 8, 9, 10}, {5, 4, 3, 2, 1}},
        {6, 3, {7, 8, 9}, {4, 3, 2}},
        {8, 5, {9, 10}, {2, 1}},
        {9, 1, {10}, {1}},
        {10, 5, {}, {}},
        {11, 5, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {10, 9, 8, 7, 6, 5, 4, 3, 2, 1}},
        {6, -1, {1, 2, 3, 4, 5}, {10, 9, 8, 7, 6}},
        {3, -1, {4, 5, 6, 7, 8, 9, 10}, {7, 6, 5, 4, 3, 2, 1}},
        {0, 0, {}, {}},
        {-3, -7, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {10, 9, 8, 7, 6, 5, 4, 3, 2, 1}},
        {2147483647, 2147483647, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {10, 9, 8, 7, 6, 5, 4, 3, 2, 1}},
        {6, -2147483647 - 1, {}, {}},
    };
    for (const auto& [offset, limit, ascending, descending] : rows) {
        for (const char* order : {"ASC", "DESC"}) {
            const auto [total, page] =
                Table().UnionList(Condition::Null(), "date", order, offset, limit, both_);
            EXPECT_EQ(total, 10U);
            EXPECT_EQ(DatesOf(page), std::string(order) == "ASC" ? ascending : descending)
                << order << " offset " << offset << " limit " << limit;
        }
    }
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(Listing, UnitesSchemas) {
    const auto fourth = Condition::HasSubstring("subject", "größe");
    const auto other = Condition::Equal("subject", "other");
    const test::Table<const char*, Condition, const char*, Names, Dates> rows = {
        {"all", Condition::Null(), "", both_, {10, 9, 8, 7, 6, 5, 4, 3, 2, 1}},
        {"one schema", Condition::Null(), "ASC", {"old"}, {1, 3, 5, 7, 9}},
        {"condition in both", other, "ASC", both_, {1, 2, 3, 5, 6, 7, 9, 10}},
        {"condition in one", fourth, "DESC", both_, {8, 4}},
        {"two values in each",
         other && Condition::ConditionFactory<std::string>("date", ">=", "6"),
         "ASC",
         both_,
         {6, 7, 9, 10}},
    };
    for (const auto& [what, condition, order, schemas, dates] : rows) {
        const auto [total, listed] = Table().UnionList(condition, "date", order, schemas);
        EXPECT_EQ(total, dates.size()) << what;
        EXPECT_EQ(DatesOf(listed), dates) << what;
    }
    EXPECT_EQ(std::get<0>(Table().UnionList(Condition::Null(), "", "", both_)), 10U);
    EXPECT_EQ(
        std::get<0>(Table().UnionList(Condition::Equal("host", "none"), "date", "ASC", both_)), 0U);
}

TEST_F(Listing, StepsThroughTheUnion) {
    record::MailLog row;
    auto query = Table().UnionStepList(Condition::Null(), "date", "ASC", 6, 3, both_, row);
    EXPECT_FALSE(query.Fetch()) << "not run";
    for (int round = 0; round < 2; ++round) {
        query.ExecuteWithoutPreFetch();
        Dates dates;
        while (query.Fetch()) {
            dates.push_back(row.date);
        }
        EXPECT_EQ(dates, (Dates{7, 8, 9})) << "round " << round;
        EXPECT_FALSE(query.Fetch());
    }
}

TEST_F(Listing, EndsAtARowThatCannotBeTaken) {
    test::RunOnFile(kSpool + "old.db", "UPDATE mail_log_table SET size = NULL WHERE date = 5");
    const auto [total, rows] = Table().UnionList(Condition::Null(), "date", "ASC", 0, 8, both_);
    EXPECT_EQ(total, 10U);
    EXPECT_EQ(DatesOf(rows), (Dates{1, 2, 3, 4}));
    const Names lines = log_.TakeErrors();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].rfind("Query fetch failed: Null value not allowed for this type", 0), 0U)
        << lines[0];

    test::RunOnFile(kSpool + "store.db", "UPDATE mail_log_table SET size = NULL WHERE date = 6");
    EXPECT_THROW(Table().List(), soci::soci_error) << "not a union";
}

TEST_F(Listing, LetsErrorsOfItsStatementsThrough) {
    EXPECT_THROW(Table().UnionList(Condition::Null(), "date", "ASC", {"main", "none"}),
                 soci::soci_error);
    EXPECT_THROW(Table().UnionList(Condition::Null(), "none", "ASC", both_), soci::soci_error);
    EXPECT_THROW(Table().List(Condition::Equal("none", "x")), soci::soci_error);
}

TEST_F(Listing, NamesTheColumns) {
    EXPECT_EQ(Table().Columns(), (Names{"message_id", "queue_id", "date", "mail_from", "mail_to",
                                        "size", "status", "host", "subject", "ori_mail_to"}));
    store_.GetSession().RawQuery("DROP TABLE main.mail_log_table");
    store_.Detach("old");
    EXPECT_EQ(Table().Columns(), Names());
}

TEST(AdminListing, KeepsItsTypesThroughAUnion) {
    test::EmptySpool();
    auto old = Provider(kSpool + "old.db").Get<AdminLogDB>(false);
    auto store = Provider(kSpool + "store.db").Get<AdminLogDB>(false);
    store.Attach(kSpool + "old.db", "old");
    record::AdminLog row;
    row.tab_type = -1;
    row.uid = 18'446'744'073'709'551'615U;
    row.webapi_param["ü"] = "ö\n";
    for (int i = 0; i < 4; ++i) {
        row.date = 5'000'000'000U + static_cast<unsigned>(i);
        (i % 2 == 0 ? store : old).MainTable().Create(row);
    }
    const auto [total, rows] =
        store.MainTable().UnionList(Condition::Null(), "date", "DESC", {"main", "old"});
    EXPECT_EQ(total, 4U);
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_TRUE(rows.front() == row);
    EXPECT_EQ(rows.back().date, 5'000'000'000U);
}

}  // namespace
}  // namespace serverlog::db
