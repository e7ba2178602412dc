#include "utils/merosdk/run_api.h"

#include <gtest/gtest.h>
#include <mailserver-log/exception/exception.h>
#include <mero/api_runner.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <regex>
#include <stdexcept>
#include <vector>

#include "support/child.h"
#include "support/syslog_socket.h"
#include "utils/json_text.h"

namespace serverlog::utils {
namespace {

constexpr char kApi[] = "MERO.Test";

std::string Ids() {
    return std::to_string(geteuid()) + ":" + std::to_string(getegid());
}

// The section's lines: "<priority> <text behind the place>", with a mark where the place is
// another.
std::vector<std::string> SectionLines(test::SyslogSocket& log) {
    static const std::regex place("^src/lib/utils/merosdk/run_api\\.cpp:[0-9]+ ");
    std::vector<std::string> lines;
    for (const auto& line : log.Take()) {
        lines.push_back(std::to_string(line.priority) + " " +
                        std::regex_replace(line.text, place, ""));
    }
    return lines;
}

// Registers an API that answers with the effective ids, calls it and tells them with those behind
// the call.
std::string IdsInAndBehind() {
    MERO::APIRunner::Register(kApi, [](auto&&...) {
        Json::Value response;
        response["success"] = true;
        response["data"] = Ids();
        return response;
    });
    return CallApiGetData(kApi, "get", Json::objectValue, 1).asString() + " " + Ids();
}

const std::vector<std::string> kEnteredAndLeft = {"38 ENTERCriticalSection",
                                                  "38 LEAVECriticalSection"};

TEST(CallApiGetData, HandsTheCallOverAsAdminAndReturnsTheData) {
    test::SyslogSocket log;
    MERO::APIRunner::Register(kApi, [](const std::string& method, int version,
                                       const Json::Value& params, const std::string& user) {
        Json::Value response;
        response["success"] = true;
        response["data"]["call"] = method + " " + std::to_string(version) + " " + user;
        response["data"]["params"] = params;
        return response;
    });
    Json::Value params;
    params["id"] = 7;
    errno = EIO;
    const Json::Value data = CallApiGetData(kApi, "get", params, 3);
    EXPECT_EQ(errno, 0);
    EXPECT_EQ(ToJsonText(data), "{\"call\":\"get 3 admin\",\"params\":{\"id\":7}}\n");
    EXPECT_EQ(SectionLines(log), kEnteredAndLeft);
}

TEST(CallApiGetData, NoSuccessAndNoDataAreFailures) {
    const char* const responses[] = {
        R"({"success":false,"data":1,"error":{"code":400}})",
        R"({"success":true})",
        R"({"data":1})",
        R"([])",
    };
    for (const char* const text : responses) {
        MERO::APIRunner::Register(kApi, [text](auto&&...) {
            Json::Value response;
            EXPECT_TRUE(ParseJsonText(text, response));
            return response;
        });
        test::SyslogSocket log;
        try {
            CallApiGetData(kApi, "get", Json::objectValue, 1);
            ADD_FAILURE() << text;
        } catch (const Exception<ETag::SDK>& exception) {
            EXPECT_EQ(exception_str(exception), "Get api data fail, api: MERO.Test method: get")
                << text;
        }
        EXPECT_EQ(log.TakeErrors(),
                  std::vector<std::string>{"Get api data fail, api: MERO.Test method: get"});
    }
    MERO::APIRunner::Unregister(kApi);
    EXPECT_THROW(CallApiGetData(kApi, "get", Json::objectValue, 1), Exception<ETag::SDK>);
}

TEST(CallApiGetData, RunsWithRootsIdsAndComesBack) {
    SKIP_WITHOUT_SECOND_USER();
    test::SyslogSocket log;
    const auto call = [] {
        test::SetIds(test::kRootForOther, test::kRootForOther);
        return IdsInAndBehind();
    };
    EXPECT_EQ(test::InChild(call), "0:0 65534:65534");
    EXPECT_EQ(SectionLines(log), kEnteredAndLeft);
}

TEST(CallApiGetData, RunsAllTheSameWhereRootIsRefused) {
    SKIP_WITHOUT_SECOND_USER();
    test::SyslogSocket log;
    const auto call = [] {
        test::SetIds(test::kOtherForGood, test::kOtherForGood);
        return IdsInAndBehind();
    };
    EXPECT_EQ(test::InChild(call), "65534:65534 65534:65534");
    EXPECT_EQ(SectionLines(log), (std::vector<std::string>{"35 ERROR: ENTERCriticalSection",
                                                           "38 LEAVECriticalSection"}));
}

TEST(CallApiGetData, RefusedWayBackIsOnlyTold) {
    SKIP_WITHOUT_SECOND_USER();
    test::SyslogSocket log;
    const auto call = [] {
        test::SetIds(test::kRootForOther, test::kRootForOther);
        MERO::APIRunner::Register(kApi, [](auto&&...) {
            test::SetIds({8025, 8025, 8025}, {8025, 8025, 8025});
            Json::Value response;
            response["success"] = true;
            response["data"] = "done";
            return response;
        });
        return CallApiGetData(kApi, "get", Json::objectValue, 1).asString();
    };
    EXPECT_EQ(test::InChild(call), "done");
    EXPECT_EQ(SectionLines(log), (std::vector<std::string>{"38 ENTERCriticalSection",
                                                           "35 ERROR: LEAVECriticalSection"}));
}

}  // namespace
}  // namespace serverlog::utils
