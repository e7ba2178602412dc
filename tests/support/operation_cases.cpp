#include "support/operation_cases.h"

#include <json/reader.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

namespace test {

namespace {

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

void AppendFile(std::filesystem::path const& path, std::vector<OperationCase>& cases) {
    std::ifstream stream(path);
    Json::Value file;
    std::string errors;
    if (!Json::parseFromStream(Json::CharReaderBuilder(), stream, &file, &errors)) {
        throw std::runtime_error(path.string() + ": " + errors);
    }
    for (Json::Value const& row : file["rows"]) {
        cases.push_back(ReadRow(row, file["replies"]));
        cases.back().name.insert(0, path.filename().string() + ": ");
    }
}

}  // namespace

std::vector<OperationCase> LoadOperationCases() {
    std::vector<std::filesystem::path> files;
    for (auto const& entry : std::filesystem::directory_iterator(kFolder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<OperationCase> cases;
    for (std::filesystem::path const& file : files) {
        AppendFile(file, cases);
    }
    if (cases.empty()) {
        throw std::runtime_error(std::string("no cases in ") + kFolder);
    }
    return cases;
}

}  // namespace test
