#include "support/operation_fixture.h"

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
using test::Statement;
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

OperationCall AddMembers() {
    OperationCall call;
    call.operation = "Webapi_Domain_User_Add_Members";
    call.params["domain_id"] = 1;
    for (char const* type : {"user", "group", "user"}) {
        Json::Value member;
        member["type"] = type;
        member["name"] = std::string("x_") + type;
        call.params["members"].append(member);
    }
    Json::Value domain;
    domain["domain_id"] = 1;
    domain["name"] = "example.com";
    call.replies["MERO.PostCubeServer.Domain list"]["domains"].append(domain);
    return call;
}

TEST_F(LoggerTest, LinesByWhatTheOperationYields) {
    struct Row {
        char const* name;
        OperationCall call;
        std::vector<Statement> statements;
        std::vector<std::string> errors;
    };
    OperationCall unknown = CreateDomain("x");
    unknown.operation = "webapi_domain_create";
    OperationCall failed = CreateDomain("x");
    failed.error = 117;
    OperationCall fixed;
    fixed.operation = "Webapi_Queue_DeleteAll_v2";
    OperationCall nothing_changed = AddMembers();
    nothing_changed.operation = "Webapi_Domain_Set";
    OperationCall throws = CreateDomain("x");
    throws.operation += "_v1";
    throws.params["name"] = Json::arrayValue;
    for (Row const& row : {
             Row{"no rules", unknown, {}, {}},
             Row{"failed call", failed, {}, {}},
             Row{"fixed text", fixed, {{20, "All mails in the queue were deleted."}}, {}},
             Row{"no row", nothing_changed, {}, {}},
             // The name with its version, as the frame gave it.
             Row{"translate throws",
                 throws,
                 {},
                 {"Log webapi operation[Webapi_Domain_Create_v1] error!"}},
             Row{"one row", CreateDomain("x"), {{21, "Domain [x] was created."}}, {}},
             Row{"several rows and tabs",
                 AddMembers(),
                 {{22, "User [x_user] was added to domain [example.com]."},
                  {22, "User [x_user] was added to domain [example.com]."},
                  {23, "Group [x_group] was added to domain [example.com]."}},
                 {}},
         }) {
        OperationResult const result = Run(row.call);
        EXPECT_EQ(result.statements, row.statements) << row.name;
        EXPECT_EQ(result.errors, row.errors) << row.name;
    }
}

TEST_F(LoggerTest, WholeLine) {
    MERO::APIRequest request(R"(o"neil\)", 4294967295U, "2001:db8::7", Json::Value());
    MERO::APIResponse response;
    Json::Value params;
    params["name"] = "a\"b";
    Logger logger("Webapi_Domain_Create", params);
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
    struct Row {
        char const* name;
        std::string value;
        std::string written;
    };
    std::string const long_text(10240, 'x');
    for (Row const& row : {
             Row{"quote and backslash", R"(\"\\)", R"(\\\"\\\\)"},
             Row{"line feed and control character", "a\nb\x01", "a\nb\x01"},
             Row{"its own placeholder", "%0%", "%0%"},
             Row{"format of the system log", "%s%n", "%s%n"},
             Row{"non-ASCII", "Zürich 東京 🙂", "Zürich 東京 🙂"},
             Row{"10 kB", long_text, long_text},
         }) {
        OperationResult const result = Run(CreateDomain(row.value));
        ASSERT_THAT(result.lines, SizeIs(1)) << row.name;
        EXPECT_THAT(result.lines[0],
                    HasSubstr(R"("STATEMENT":"Domain [)" + row.written + R"(] was created.")"))
            << row.name;
        EXPECT_EQ(result.params["name"], row.value) << row.name;
    }
}

TEST_F(LoggerTest, PlaceholdersAreFilledInRisingOrder) {
    Json::Value params;
    params["domain_id"] = 1;
    params["additional_domains"].append("%1% and %2%");
    Logger logger("Webapi_Additional_Domain_Create", params);
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
    OperationCall call = AddMembers();
    call.replies = {{"MERO.PostCubeServer.Domain get", Json::Value()}};
    OperationResult const result = Run(call);
    EXPECT_THAT(result.errors,
                ElementsAre("Get api data fail, api: MERO.PostCubeServer.Domain method: list",
                            "Get old info fail: Webapi_Domain_User_Add_Members"));
    EXPECT_THAT(result.statements, SizeIs(3));
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
    Json::Value expected;
    expected["force_log"] = true;
    EXPECT_EQ(DownloadFlag(Json::arrayValue), expected);
    expected["name"] = "";
    EXPECT_EQ(UploadFlag(Json::Value()), expected);
    Json::Value params;
    params["name"] = expected["name"] = "logo.png";
    EXPECT_EQ(UploadFlag(params), expected);
}

}  // namespace
