#include "support/json_value.h"
#include "support/operation_fixture.h"
#include "support/table.h"

#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/adminlog/logger/flags.h>
#include <mailserver-log/log/adminlog/logger/logger.h>

#include <gmock/gmock.h>
#include <json/value.h>
#include <mero/api_request.h>
#include <mero/api_response.h>
#include <mero/api_runner.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace serverlog::log::adminlog;
using serverlog::ETag;
using serverlog::Exception;
using test::OperationCall;
using test::OperationResult;
using test::OperationTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kStore[] = "/var/spool/@PostCube-Server/aggr_log/admin_log.db";

class LoggerTest : public OperationTest {};

OperationCall CreateDomain(std::string const& name) {
    OperationCall call;
    call.operation = "Webapi_Domain_Create";
    call.params["name"] = name;
    return call;
}

TEST_F(LoggerTest, CallsWithoutALine) {
    OperationCall unknown = CreateDomain("x");
    unknown.operation = "webapi_domain_create";
    OperationCall failed = CreateDomain("x");
    failed.error = 117;
    OperationCall throws = CreateDomain("x");
    throws.operation += "_v1";
    throws.params["name"] = Json::arrayValue;
    test::Table<char const*, OperationCall, std::vector<std::string>> const rows = {
        {"no rules", unknown, {}},
        {"failed call", failed, {}},
        // The name with its version, as the frame gave it.
        {"translate throws", throws, {"Log webapi operation[Webapi_Domain_Create_v1] error!"}},
    };
    for (auto const& [name, call, errors] : rows) {
        OperationResult const result = Run(call);
        EXPECT_THAT(result.statements, IsEmpty()) << name;
        EXPECT_EQ(result.errors, errors) << name;
    }
}

TEST_F(LoggerTest, WholeLine) {
    MERO::APIRequest request(R"(o"neil\)", 4294967295U, "2001:db8::7", Json::Value());
    MERO::APIResponse response;
    Logger logger("Webapi_Domain_Create", test::JsonOf(R"({"name":"a\"b"})"));
    long const before = time(nullptr);
    logger.Log(&request, &response);
    long const after = time(nullptr);

    std::vector<std::string> const lines = syslog_.TakeTexts(16);
    ASSERT_THAT(lines, SizeIs(1));
    std::string const line = lines[0];
    std::string const head =
        R"({"id":"MEROPostCube-Server","type":"admin_log","TAB_TYPE":21,)"
        R"("STATEMENT":"Domain [a\"b] was created.","USER":"o\"neil\\","UID":4294967295,"EXEC_TIME":)";
    ASSERT_EQ(line.substr(0, head.size()), head);
    std::size_t digits = 0;
    long const written = std::stol(line.substr(head.size()), &digits);
    EXPECT_TRUE(before <= written && written <= after) << line;
    // The parameters keep the line feed that ends a JSON document, and are escaped twice: as JSON
    // text and for the line.
    std::string const tail = R"x(,"IP":"2001:db8::7","SERVER":"(192.0.2.1)",)x"
                             R"x("WEBAPI_PARAM":"{\"name\":\"a\\\"b\"})x"
                             "\n\"}";
    EXPECT_EQ(line.substr(head.size() + digits), tail);
    EXPECT_TRUE(std::filesystem::exists(kStore));
}

TEST_F(LoggerTest, ValuesInAStatement) {
    std::string const long_text(10240, 'x');
    test::Table<char const*, std::string, std::string> const rows = {
        {"quote and backslash", R"(\"\\)", R"(\\\"\\\\)"},
        {"line feed and control character", "a\nb\x01", "a\nb\x01"},
        {"its own placeholder", "%0%", "%0%"},
        {"format of the system log", "%s%n", "%s%n"},
        {"non-ASCII", "Zürich 東京 🙂", "Zürich 東京 🙂"},
        {"10 kB", long_text, long_text},
    };
    for (auto const& [name, value, written] : rows) {
        OperationResult const result = Run(CreateDomain(value));
        ASSERT_THAT(result.lines, SizeIs(1)) << name;
        EXPECT_THAT(result.lines[0],
                    HasSubstr(R"("STATEMENT":"Domain [)" + written + R"(] was created.")"))
            << name;
        EXPECT_EQ(result.params["name"], value) << name;
    }
}

TEST_F(LoggerTest, PlaceholdersAreFilledInRisingOrder) {
    Logger logger("Webapi_Additional_Domain_Create",
                  test::JsonOf(R"({"domain_id":1,"additional_domains":["%1% and %2%"]})"));
    // The domain's name is empty without PreLog; %2% has no value and stays.
    EXPECT_THAT(
        logger.ComposeStatement("Additional domain %0% of domain %1% was created.", {}, {}),
        ElementsAre(R"(,"STATEMENT":"Additional domain [[] and %2%] of domain [] was created.")"));
    EXPECT_THAT(logger.ComposeStatement("Another template %0%.", {}, {}), IsEmpty());
}

TEST_F(LoggerTest, NullRequestOrResponse) {
    MERO::APIRequest request("admin", 1024, "198.51.100.7", Json::Value());
    MERO::APIResponse response;
    Logger known("Webapi_Queue_DeleteAll", Json::Value());
    Logger unknown("Webapi_Nothing", Json::Value());
    struct Row {
        Logger& logger;
        MERO::APIRequest* request;
        MERO::APIResponse* response;
    };
    for (Row const& row : {Row{known, nullptr, &response}, Row{known, &request, nullptr},
                           Row{unknown, nullptr, nullptr}}) {
        row.logger.Log(row.request, row.response);
        EXPECT_THAT(syslog_.TakeErrors(), ElementsAre("empty req! abort logging"));
    }
    unknown.PreLog();
    unknown.Log(&request, &response);
    EXPECT_THAT(syslog_.Take(), IsEmpty());
}

TEST_F(LoggerTest, FailingToLoadTheOldStateIsNoFailureOfTheCall) {
    OperationCall call;
    call.operation = "Webapi_Domain_User_Add_Members";
    call.params = test::JsonOf(R"({"domain_id":1,"members":[{"type":"user","name":"x"}]})");
    call.replies = {{"MERO.PostCubeServer.Domain get", Json::Value()}};
    OperationResult const result = Run(call);
    EXPECT_THAT(result.errors,
                ElementsAre("Get api data fail, api: MERO.PostCubeServer.Domain method: list",
                            "Get old info fail: Webapi_Domain_User_Add_Members"));
    ASSERT_THAT(result.statements, SizeIs(1));
    EXPECT_THAT(result.lines[0], HasSubstr("domain []."));
}

TEST_F(LoggerTest, StoreThatCannotBeOpenedEndsTheLogBeforeTheFirstLine) {
    std::filesystem::path const folder = std::filesystem::path(kStore).parent_path();
    std::filesystem::remove_all(folder);
    EXPECT_THROW(Run(CreateDomain("x")), Exception<ETag::FileSystem>);
    EXPECT_THAT(syslog_.TakeTexts(16), IsEmpty());
    std::filesystem::create_directory(folder);
    EXPECT_THAT(Run(CreateDomain("x")).statements, SizeIs(1));
}

TEST(FlagsTest, ForceTheLog) {
    using test::JsonOf;
    EXPECT_EQ(DownloadFlag(Json::arrayValue), JsonOf(R"({"force_log":true})"));
    EXPECT_EQ(UploadFlag(Json::Value()), JsonOf(R"({"force_log":true,"name":""})"));
    EXPECT_EQ(UploadFlag(JsonOf(R"({"name":"logo.png"})")),
              JsonOf(R"({"force_log":true,"name":"logo.png"})"));
}

}  // namespace
