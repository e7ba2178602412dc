#include "utils/merosdk/run_api.h"

#include <gtest/gtest.h>
#include <mailserver-log/exception/exception.h>
#include <mero/api_runner.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <regex>
#include <vector>

#include "support/child.h"
#include "support/outcome.h"
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

Json::Value Success(const Json::Value& data) {
    Json::Value response;
    response["success"] = true;
    response["data"] = data;
    return response;
}

const std::vector<std::string> kEnteredAndLeft = {"38 ENTERCriticalSection",
                                                  "38 LEAVECriticalSection"};

TEST(CallApiGetData, HandsTheCallOverAsAdminAndReturnsTheData) {
    test::SyslogSocket log;
    MERO::APIRunner::Register(kApi, [](const std::string& method, int version,
                                       const Json::Value& params, const std::string& user) {
        Json::Value data;
        data["call"] = method + " " + std::to_string(version) + " " + user;
        data["params"] = params;
        return Success(data);
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
    const std::string failure = "Get api data fail, api: MERO.Test method: get";
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
        const auto call = [] { CallApiGetData(kApi, "get", Json::objectValue, 1); };
        EXPECT_EQ(test::OutcomeOf<ETag::SDK>(call), failure) << text;
        EXPECT_EQ(log.TakeErrors(), std::vector<std::string>{failure});
    }
    MERO::APIRunner::Unregister(kApi);
    EXPECT_THROW(CallApiGetData(kApi, "get", Json::objectValue, 1), Exception<ETag::SDK>);
}

TEST(CallApiGetData, RunsWithRootsIdsWhereItCanAndComesBack) {
    SKIP_WITHOUT_SECOND_USER();
    test::SyslogSocket log;
    const struct {
        const char* name;
        test::Ids before;
        std::function<void()> within;
        std::string ids;  // within the call and behind it
        std::vector<std::string> lines;
    } rows[] = {
        {"root", test::kRootForOther, [] {}, "0:0 65534:65534", kEnteredAndLeft},
        {"root is refused",
         test::kOtherForGood,
         [] {},
         "65534:65534 65534:65534",
         {"35 ERROR: ENTERCriticalSection", "38 LEAVECriticalSection"}},
        {"way back is refused",
         test::kRootForOther,
         [] {
             test::SetIds({8025, 8025, 8025}, {8025, 8025, 8025});
         },
         "8025:8025 8025:8025",
         {"38 ENTERCriticalSection", "35 ERROR: LEAVECriticalSection"}},
    };
    for (const auto& row : rows) {
        const auto call = [&row] {
            test::SetIds(row.before, row.before);
            MERO::APIRunner::Register(kApi, [&row](auto&&...) {
                row.within();
                return Success(Ids());
            });
            const Json::Value within = CallApiGetData(kApi, "get", Json::objectValue, 1);
            return within.asString() + " " + Ids();
        };
        EXPECT_EQ(test::InChild(call), row.ids) << row.name;
        EXPECT_EQ(SectionLines(log), row.lines) << row.name;
    }
}

}  // namespace
}  // namespace serverlog::utils
