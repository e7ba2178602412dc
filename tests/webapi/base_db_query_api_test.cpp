#include <gtest/gtest.h>
#include <mailserver-log/webapi/base_db_query_api.h>
#include <mero/api_request.h>
#include <mero/api_response.h>

#include <string>
#include <vector>

#include "support/json_value.h"
#include "support/query_call.h"

namespace serverlog::webapi {
namespace {

using merodbquery::Condition;

/// A search whose conditions are comparisons of a column with its own kind of search.
class Search : public BaseDBQueryAPI {
 public:
    using BaseDBQueryAPI::BaseDBQueryAPI;
    using BaseDBQueryAPI::DateCondition;
    using BaseDBQueryAPI::GetCond;
    using BaseDBQueryAPI::GetSort;
    using BaseDBQueryAPI::IsAdvanceSearch;

    std::tuple<int, Json::Value> Execute() override { return {0, Json::objectValue}; }
    std::string SortBy(const std::string& sort_by) override { return sort_by; }
    ConditionTable SimpleSearch() override { return Table("simple"); }
    ConditionTable AdvanceSearch() override { return Table("advance"); }

    /// What the shared parameters were read to.
    std::string Fields() const {
        return std::to_string(offset_) + "|" + std::to_string(limit_) + "|" + query_ + "|" +
               action_ + "|" + sort_by_ + "|" + sort_direction_ + "|" + date_from_ + "|" + date_to_;
    }

    std::string called_;

 private:
    ConditionTable Table(const std::string& kind) {
        ConditionTable table;
        for (const char* column : {"a", "b", "c", "none"}) {
            table[column] = [this, column, kind] {
                called_ += column;
                return std::string(column) == "c" ? Condition::Null()
                                                  : Condition::Equal(column, kind.c_str());
            };
        }
        table["no column"] = [this] { return called_ += "!", Condition::Null(); };
        return table;
    }
};

std::string ExpressionOf(const Condition& condition) {
    merodbquery::PositionBinder binder;
    return condition.GetExpression(binder);
}

TEST(BaseDBQueryAPI, ReadsTheSharedParametersInBothForms) {
    const char kDefaults[] = "0|-1|||date|DESC||";
    const struct {
        const char* params;
        const char* fields;
    } rows[] = {
        {"{}", kDefaults},
        {R"({"offset":5,"limit":0,"query":" grüße ","action":"find","sort_by":"x",
             "sort_direction":"up","date_from":"2026/11/22","date_to":"y"})",
         "5|0|GRÜSSE|find|x|up|2026/11/22|y"},
        {R"({"offset":-5,"limit":-7})", "-5|-7|||date|DESC||"},
        {R"({"query":"   ","action":"","sort_by":""})", "0|-1||||DESC||"},
        {R"({"offset":"5","limit":5.5,"query":1,"action":["find"],"sort_by":null,
             "sort_direction":{},"date_from":20261122,"date_to":false})",
         kDefaults},
        {R"({"offset":3000000000,"limit":-3000000000})", kDefaults},
        {R"([{"offset":5}])", kDefaults},
        {"null", kDefaults},
    };
    for (const auto& row : rows) {
        Search by_json(test::JsonOf(row.params));
        EXPECT_EQ(std::get<0>(by_json.ReadRequestFromJson()), 0);
        EXPECT_EQ(by_json.Fields(), row.fields) << row.params;

        MERO::APIRequest request = test::RequestWith(test::JsonOf(row.params));
        MERO::APIResponse response;
        Search by_request(&request, &response);
        EXPECT_EQ(std::get<0>(by_request.ReadRequest()), 0);
        EXPECT_EQ(by_request.Fields(), row.fields) << row.params;
    }
}

TEST(BaseDBQueryAPI, DecidesBetweenTheSearches) {
    const struct {
        const char* action;
        const char* query;
        bool is_advance;
    } rows[] = {
        {"find", "", false}, {"find", "x", false}, {"list", "", true}, {"list", "x", true},
        {"Find", "x", true}, {"", "", true},       {"", "x", false},   {"", "  ", true},
    };
    for (const auto& row : rows) {
        Json::Value params;
        params["action"] = row.action;
        params["query"] = row.query;
        Search search(params);
        search.ReadRequestFromJson();
        EXPECT_EQ(search.IsAdvanceSearch(), row.is_advance) << row.action << "," << row.query;
    }
}

TEST(BaseDBQueryAPI, JoinsTheConditionsOfColumnsInTheirOrder) {
    const struct {
        const char* query;
        std::vector<std::string> columns;
        const char* called;
        const char* expression;
    } rows[] = {
        {"", {"a", "b"}, "ab", "(a = ? AND b = ?)"},
        {"x", {"b", "a"}, "ba", "(b = ? OR a = ?)"},
        {"x", {"c", "z", "b", "A"}, "cb", "b = ?"},
        {"x", {"c"}, "c", ""},
        {"", {}, "", ""},
    };
    for (const auto& row : rows) {
        Json::Value params;
        params["query"] = row.query;
        Search search(params);
        search.ReadRequestFromJson();
        EXPECT_EQ(ExpressionOf(search.GetCond(row.columns)), row.expression);
        EXPECT_EQ(search.called_, row.called);
    }
}

TEST(BaseDBQueryAPI, SortsByColumnsOnly) {
    const struct {
        const char* sort_by;
        std::vector<std::string> columns;
        const char* sort;
    } rows[] = {
        {"b", {"a", "b"}, "b"},
        {"B", {"a", "b"}, ""},
        {"b; DROP", {"a", "b"}, ""},
        {"a", {}, ""},
    };
    for (const auto& row : rows) {
        Json::Value params;
        params["sort_by"] = row.sort_by;
        Search search(params);
        search.ReadRequestFromJson();
        EXPECT_EQ(search.GetSort(row.columns), row.sort) << row.sort_by;
    }
}

TEST(BaseDBQueryAPI, BoundsTheDateOnlyWhereAsked) {
    const struct {
        const char* params;
        const char* expression;
    } rows[] = {
        {"{}", ""},
        {R"({"date_from":"2026/11/22"})", "date >= ?"},
        {R"({"date_to":"2026/11/22"})", "date <= ?"},
        {R"({"date_from":"yesterday","date_to":"today"})", "(date >= ? AND date <= ?)"},
    };
    for (const auto& row : rows) {
        Search search(test::JsonOf(row.params));
        search.ReadRequestFromJson();
        EXPECT_EQ(ExpressionOf(search.DateCondition()), row.expression) << row.params;
    }
}

}  // namespace
}  // namespace serverlog::webapi
