#pragma once

#include "support/operation_fixture.h"

#include <json/value.h>

#include <optional>
#include <string>
#include <vector>

namespace test {

/// A call and what it has to leave behind.
struct OperationCase {
    std::string name;  ///< "<file>: <row>", for messages
    OperationCall call;
    std::vector<Statement> statements;
    std::vector<std::string> errors;
    std::optional<std::vector<std::string>> api_calls;
    std::optional<Json::Value> logged_params;
};

/// Reads the cases from tests/log/adminlog/operations/cases, file by file in the order of their
/// names. A file is an object:
///
///     {"replies": {"<api> <method>": <data>, …},
///      "rows": [{"name": "<what is shown>", "operation": "<key>", "params": …, "replies": …,
///      "body": …,
///                "error": 0, "statements": [[21, "Domain [a] was created."]], "errors": ["…"],
///                "api_calls": ["<api> <method> <version> <user> <params>"], "logged_params": …}]}
///
/// "name", "operation" and "statements" must be there. A row's replies replace those of the file.
/// What is missing of "api_calls" and "logged_params" is not looked at; no "errors" means none.
///
/// Throws std::runtime_error for a file or a row that cannot be read.
std::vector<OperationCase> LoadOperationCases();

}  // namespace test
