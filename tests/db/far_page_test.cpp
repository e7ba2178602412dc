// Pages that are not read by the plain union of the schemas have to hold its rows in its order.

#include <gtest/gtest.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <merodbquery/condition.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "db/page.h"
#include "db/page_queries.h"
#include "support/spool.h"
#include "support/sqlite_file.h"

namespace serverlog::db {
namespace {

using merodbquery::Condition;
using test::kSpool;
using test::RunOnFile;
using Ids = std::vector<std::string>;

constexpr int kRowsOfFile = 15'000;

const std::string kMain = kSpool + "store.db";
const std::string kOld = kSpool + "old.db";

/// The dates of the two files; rows with the same date are many and lie far apart.
struct Dates {
    const char* name;
    int main_first;
    int main_days;
    int old_first;
    int old_days;
    const char* further;  // changes to the main file
};

struct PageCase {
    int offset;
    int limit;
    std::string order;
};

class FarPage : public testing::Test {
 protected:
    void Fill(const Dates& dates) {
        test::EmptySpool();
        for (const auto& [path, first, days] :
             {std::tuple(kMain, dates.main_first, dates.main_days),
              std::tuple(kOld, dates.old_first, dates.old_days)}) {
            Provider(path).Get<MailLogDB>(false);
            RunOnFile(path,
                      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                          std::to_string(kRowsOfFile) +
                          ") INSERT INTO mail_log_table (message_id, date, size, status, subject) "
                          "SELECT '" +
                          (path == kMain ? "m" : "o") + "' || i, " + std::to_string(first) +
                          " + (i * 7919 / 3) % " + std::to_string(days) +
                          ", (i * 31) % 500, CASE WHEN i % 500 = 1 THEN 4 WHEN i % 3 = 0 THEN 1 "
                          "ELSE 0 END, 'subject ' || i % 7 FROM n");
        }
        RunOnFile(kMain, dates.further);
    }

    /// The ids of a page as the plain union gives them.
    static Ids Plain(const std::string& where, const std::string& sort, const PageCase& asked,
                     unsigned long total) {
        const internal::Page page = internal::FromNearerEnd(
            total, {asked.offset, asked.limit, asked.order != "ASC", /*reversed=*/false});
        const std::string select = "SELECT * FROM ";
        // Just this statement: with another one around it SQLite might go about it differently.
        Ids ids = RunOnFile(
            kMain, "ATTACH '" + kOld + "' AS old; " + select + "main.mail_log_table" + where +
                       " UNION ALL " + select + "old.mail_log_table" + where + " ORDER BY " + sort +
                       (page.descending ? " DESC" : " ASC") + " LIMIT " +
                       std::to_string(page.limit) + " OFFSET " + std::to_string(page.offset));
        for (std::string& id : ids) {
            id.resize(id.find('|'));  // the first column
        }
        if (page.reversed) {
            std::reverse(ids.begin(), ids.end());
        }
        return ids;
    }

    /// Compares a page with the plain one; whether it was read in another way.
    static bool ComparePage(const Condition& condition, const std::string& where,
                            const std::string& sort, const PageCase& asked) {
        auto store = Provider(kMain).Get<MailLogDB>(false);
        store.Attach(kOld, "old");
        const auto [total, rows] = store.MainTable().UnionList(
            condition, sort, asked.order, asked.offset, asked.limit, store.Schemas());
        Ids ids;
        for (const record::MailLog& row : rows) {
            ids.push_back(row.message_id);
        }
        EXPECT_EQ(ids, Plain(where, sort, asked, total));

        std::vector<internal::CountedSchema> counted;
        for (const std::string& schema : store.Schemas()) {
            counted.push_back({schema, std::get<0>(store.MainTable().UnionList(condition, "", "", 0,
                                                                               0, {schema}))});
        }
        return !internal::PageQueries(
                    {store.GetSession(), "mail_log_table", condition, sort, counted},
                    internal::FromNearerEnd(
                        total, {asked.offset, asked.limit, asked.order != "ASC", false}))
                    .empty();
    }
};

TEST_F(FarPage, OfAllRowsIsThatOfThePlainUnion) {
    const Dates data[] = {
        {"one behind the other", 5000, 900, 0, 5000, ""},
        {"with one date in both", 4999, 900, 0, 5000, ""},
        {"the other way round", 0, 5000, 5000, 900, ""},
        {"with late rows", 5000, 900, 0, 5000,
         "UPDATE mail_log_table SET date = 4990 WHERE rowid % 300 = 0"},
        {"mixed", 0, 5000, 0, 5000, ""},
        {"all on one date", 7, 1, 7, 1, ""},
    };
    for (const Dates& dates : data) {
        Fill(dates);
        int other_ways = 0;
        for (const char* order : {"DESC", "ASC"}) {
            for (const int offset : {9'999, 10'000, 14'990, 15'001, 17'000}) {
                for (const int limit : {20, 3000}) {
                    SCOPED_TRACE(std::string(dates.name) + " " + order + " " +
                                 std::to_string(offset) + " " + std::to_string(limit));
                    other_ways +=
                        ComparePage(Condition::Null(), "", "date", {offset, limit, order});
                }
            }
        }
        const bool can_be_told_apart = dates.name != data[4].name && dates.name != data[5].name;
        EXPECT_EQ(other_ways > 0, can_be_told_apart) << dates.name;
    }
}

TEST_F(FarPage, OfAStatusIsThatOfThePlainUnion) {
    for (const Dates& dates : {Dates{"one behind the other", 5000, 900, 0, 5000, ""},
                               Dates{"mixed", 0, 50, 0, 50, ""}}) {
        Fill(dates);
        for (const char* sort : {"date", "size", "subject"}) {
            for (const char* order : {"DESC", "ASC"}) {
                for (const int offset : {0, 49, 700, 9'000, 19'000, 19'980}) {
                    SCOPED_TRACE(std::string(dates.name) + " " + sort + " " + order + " " +
                                 std::to_string(offset));
                    const bool is_near = offset < 800 || offset >= 19'000;
                    const bool walked =
                        ComparePage(Condition::ConditionFactory<std::string>("status", "=", "0"),
                                    " WHERE status = '0'", sort, {offset, 20, order});
                    // Behind the last row the plain union gives all.
                    EXPECT_EQ(walked, is_near && offset < 19'900) << "walked";
                    EXPECT_FALSE(
                        ComparePage(Condition::ConditionFactory<std::string>("status", "=", "4"),
                                    " WHERE status = '4'", sort, {offset % 60, 20, order}))
                        << "of a rare status";
                }
            }
        }
    }
}

TEST_F(FarPage, OfOneOrAnotherStatusIsThatOfThePlainUnion) {
    Fill({"mixed", 0, 50, 0, 50, ""});
    const Condition either = Condition::ConditionFactory<std::string>("status", "=", "0") ||
                             Condition::ConditionFactory<std::string>("status", "=", "1");
    for (const char* order : {"DESC", "ASC"}) {
        EXPECT_FALSE(
            ComparePage(either, " WHERE (status = '0' OR status = '1')", "date", {100, 20, order}))
            << order;
    }
}

TEST_F(FarPage, NeedsAnIndexAndDates) {
    const PageCase asked = {12'000, 20, "DESC"};
    Fill({"without index", 5000, 900, 0, 5000, "DROP INDEX mail_log_table_date_idx"});
    EXPECT_FALSE(ComparePage(Condition::Null(), "", "date", asked));
    EXPECT_FALSE(ComparePage(Condition::Null(), "", "host", asked));
    Fill({"with one NULL", 5000, 900, 0, 5000,
          "UPDATE mail_log_table SET subject = NULL WHERE rowid = 1"});
    EXPECT_FALSE(ComparePage(Condition::Null(), "", "subject", asked));
}

}  // namespace
}  // namespace serverlog::db
