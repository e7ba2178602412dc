#include "support/operation_cases.h"
#include "support/operation_fixture.h"

#include "utils/json_text.h"

#include <mailserver-log/log/adminlog/operations.h>

#include <gmock/gmock.h>
#include <json/value.h>

#include <set>
#include <string>
#include <vector>

// Each file of cases/ holds the calls of some pages and what the administrator reads afterwards.

namespace {

using test::OperationCase;
using test::OperationResult;
using test::OperationTest;
using testing::ElementsAreArray;

std::vector<std::string> const kKeys = {
#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...) #key,
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION
};

/// Values of the wrong type for nearly every parameter, and some of the right one.
std::vector<Json::Value> const& OddValues() {
    static std::vector<Json::Value> const values = [] {
        Json::Value list(Json::arrayValue);
        list.append(7);
        list.append("text");
        list.append(Json::objectValue);
        list.append(Json::arrayValue);
        list.append(Json::Value());
        Json::Value object;
        object["name"] = Json::arrayValue;
        object["id"] = Json::objectValue;
        return std::vector<Json::Value>{
            Json::Value(),     -7,   1e30,  true, "", "text", Json::arrayValue,
            Json::objectValue, list, object};
    }();
    return values;
}

/// Calls `visit` with `params` once for each odd value in the place of each of its values.
template <class Visit>
void ForEachOddity(Json::Value& root, Json::Value& place, Visit const& visit) {
    Json::Value const original = place;
    for (Json::Value const& odd : OddValues()) {
        place = odd;
        visit(root);
    }
    place = original;
    if (place.isObject() || place.isArray()) {
        for (Json::Value& element : place) {
            ForEachOddity(root, element, visit);
        }
    }
}

class OperationCasesTest : public OperationTest {};

TEST_F(OperationCasesTest, WritesTheStatementsOfEachCase) {
    for (OperationCase const& row : test::LoadOperationCases()) {
        SCOPED_TRACE(row.name);
        OperationResult const result = Run(row.call);
        EXPECT_THAT(result.statements, ElementsAreArray(row.statements));
        EXPECT_THAT(result.errors, ElementsAreArray(row.errors));
        if (row.api_calls) {
            EXPECT_THAT(result.api_calls, ElementsAreArray(*row.api_calls));
        }
        if (row.logged_params) {
            EXPECT_EQ(result.params, *row.logged_params);
        }
    }
}

TEST_F(OperationCasesTest, EachOperationHasACaseWithAStatement) {
    std::set<std::string> shown;
    for (OperationCase const& row : test::LoadOperationCases()) {
        if (!row.statements.empty()) {
            shown.insert(row.call.operation);
        }
    }
    for (std::string const& key : kKeys) {
        EXPECT_EQ(shown.count(key), 1U) << key;
    }
}

TEST_F(OperationCasesTest, TakesParametersOfAnyShape) {
    std::set<std::string> done;
    for (OperationCase const& row : test::LoadOperationCases()) {
        test::OperationCall call = row.call;
        if (!done.insert(call.operation).second) {
            continue;
        }
        Json::Value params = call.params;
        ForEachOddity(params, params, [&](Json::Value const& odd) {
            call.params = odd;
            EXPECT_NO_THROW(Run(call)) << row.name << " with " << serverlog::utils::ToJsonText(odd);
        });
    }
}

TEST_F(OperationCasesTest, TakesOldStatesOfAnyShape) {
    std::set<std::string> done;
    for (OperationCase const& row : test::LoadOperationCases()) {
        test::OperationCall call = row.call;
        if (!done.insert(call.operation).second) {
            continue;
        }
        for (std::string const& api_call : Run(call).api_calls) {
            for (auto& [method, reply] : call.replies) {
                if (api_call.rfind(method + " ", 0) != 0) {
                    continue;
                }
                ForEachOddity(reply, reply, [&](Json::Value const& odd) {
                    EXPECT_NO_THROW(Run(call))
                        << row.name << " with " << serverlog::utils::ToJsonText(odd);
                });
            }
        }
    }
}

}  // namespace
