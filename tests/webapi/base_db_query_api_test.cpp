#include <gtest/gtest.h>
#include <mailserver-log/webapi/base_db_query_api.h>
#include <mero/api_request.h>
#include <mero/api_response.h>

#include <string>

#include "support/json_value.h"
#include "support/query_call.h"
#include "support/table.h"

namespace serverlog::webapi {
namespace {

/// Tells what the shared parameters were read to.
class Search : public BaseDBQueryAPI {
 public:
    using BaseDBQueryAPI::BaseDBQueryAPI;

    std::tuple<int, Json::Value> Execute() override { return {0, Json::objectValue}; }
    std::string SortBy(const std::string& sort_by) override { return sort_by; }
    ConditionTable SimpleSearch() override { return {}; }
    ConditionTable AdvanceSearch() override { return {}; }

    std::string Fields() const {
        return std::to_string(offset_) + "|" + std::to_string(limit_) + "|" + query_ + "|" +
               action_ + "|" + sort_by_ + "|" + sort_direction_ + "|" + date_from_ + "|" + date_to_;
    }
};

TEST(BaseDBQueryAPI, ReadsTheSharedParametersInBothForms) {
    const char kDefaults[] = "0|-1|||date|DESC||";
    const test::Table<const char*, const char*> rows = {
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
    for (const auto& [params, fields] : rows) {
        Search by_json(test::JsonOf(params));
        EXPECT_EQ(std::get<0>(by_json.ReadRequestFromJson()), 0);
        EXPECT_EQ(by_json.Fields(), fields) << params;

        MERO::APIRequest request = test::RequestWith(test::JsonOf(params));
        MERO::APIResponse response;
        Search by_request(&request, &response);
        EXPECT_EQ(std::get<0>(by_request.ReadRequest()), 0);
        EXPECT_EQ(by_request.Fields(), fields) << params;
    }
}

}  // namespace
}  // namespace serverlog::webapi
