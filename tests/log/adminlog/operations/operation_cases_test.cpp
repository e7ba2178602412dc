#include "support/json_value.h"
#include "support/operation_fixture.h"
#include "support/text_file.h"

#include "utils/json_text.h"

#include <mailserver-log/log/adminlog/operations.h>

#include <gmock/gmock.h>
#include <json/value.h>

#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

// Each file of cases/ holds the calls of some pages and what the administrator reads afterwards.

namespace {

using test::OperationCall;
using test::OperationResult;
using test::OperationTest;
using testing::ElementsAreArray;

/// A call and what it has to leave behind.
struct OperationCase {
    std::string name;  ///< "<file>: <row>", for messages
    OperationCall call;
    std::vector<test::Statement> statements;
    std::vector<std::string> errors;
    std::optional<std::vector<std::string>> api_calls;
    std::optional<Json::Value> logged_params;
};

constexpr char kFolder[] = PROJECT_SOURCE_DIRECTORY "/tests/log/adminlog/operations/cases";

std::vector<std::string> Texts(Json::Value const& list) {
    std::vector<std::string> texts;
    for (Json::Value const& text : list) {
        texts.push_back(text.asString());
    }
    return texts;
}

/// A misspelt member would be a check that never runs.
void RefuseUnknownMembers(Json::Value const& row) {
    static std::set<std::string> const known = {
        "name",  "operation",  "params", "replies",   "body",
        "error", "statements", "errors", "api_calls", "logged_params"};
    for (std::string const& member : row.getMemberNames()) {
        if (known.count(member) == 0) {
            throw std::runtime_error("unknown member " + member);
        }
    }
    for (char const* needed : {"name", "operation", "statements"}) {
        if (!row.isMember(needed)) {
            throw std::runtime_error(std::string("missing member ") + needed);
        }
    }
}

OperationCase ReadRow(Json::Value const& row, Json::Value const& file_replies) {
    RefuseUnknownMembers(row);
    OperationCase result;
    result.name = row["name"].asString();
    result.call.operation = row["operation"].asString();
    result.call.params = row.get("params", Json::objectValue);
    Json::Value const replies = row.get("replies", file_replies);
    for (std::string const& method : replies.getMemberNames()) {
        result.call.replies[method] = replies[method];
    }
    result.call.body = row["body"];
    result.call.error = row["error"].asInt();
    for (Json::Value const& statement : row["statements"]) {
        result.statements.push_back({statement[0].asInt(), statement[1].asString()});
    }
    result.errors = Texts(row["errors"]);
    if (row.isMember("api_calls")) {
        result.api_calls = Texts(row["api_calls"]);
    }
    if (row.isMember("logged_params")) {
        result.logged_params = row["logged_params"];
    }
    return result;
}

void AppendFile(std::string const& name, std::vector<OperationCase>& cases) {
    Json::Value const file = test::JsonOf(test::ReadTextFile(std::string(kFolder) + "/" + name));
    for (Json::Value const& row : file["rows"]) {
        cases.push_back(ReadRow(row, file["replies"]));
        cases.back().name.insert(0, name + ": ");
    }
}

/// Reads the cases from tests/log/adminlog/operations/cases, file by file in the order of their
/// names. A file is an object:
///
///     {"replies": {"<api> <method>": <data>, …},
///      "rows": [{"name": "<what is shown>", "operation": "<key>", "params": …,
///                "replies": …, "body": …, "error": 0,
///                "statements": [[21, "Domain [a] was created."]], "errors": ["…"],
///                "api_calls": ["<api> <method> <version> <user> <params>"], "logged_params": …}]}
///
/// "name", "operation" and "statements" must be there. A row's replies replace those of the file.
/// What is missing of "api_calls" and "logged_params" is not looked at; no "errors" means none.
///
/// Throws std::runtime_error for a file or a row that cannot be read.
std::vector<OperationCase> LoadOperationCases() {
    std::vector<OperationCase> cases;
    for (std::string const& name : test::FilesIn(kFolder)) {
        AppendFile(name, cases);
    }
    if (cases.empty()) {
        throw std::runtime_error(std::string("no cases in ") + kFolder);
    }
    return cases;
}

std::vector<std::string> const kKeys = {
#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...) #key,
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION
};

/// Values of the wrong type for nearly every parameter, and some of the right one.
Json::Value const kOddValues = test::JsonOf(
    R"([null, -7, 1e30, true, "", "text", [], {}, [7, "text", {}, [], null], {"name":[], "id":{}}])");

/// Calls `visit` with `params` once for each odd value in the place of each of its values.
template <class Visit>
void ForEachOddity(Json::Value& root, Json::Value& place, Visit const& visit) {
    Json::Value const original = place;
    for (Json::Value const& odd : kOddValues) {
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
    for (OperationCase const& row : LoadOperationCases()) {
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
    for (OperationCase const& row : LoadOperationCases()) {
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
    for (OperationCase const& row : LoadOperationCases()) {
        OperationCall call = row.call;
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
    for (OperationCase const& row : LoadOperationCases()) {
        OperationCall call = row.call;
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
