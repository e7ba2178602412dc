#include <gtest/gtest.h>
#include <mero/cgi_request.h>
#include <mero/cgi_request_error.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "support/json_value.h"
#include "support/table.h"

namespace {

using MERO::APIRequest;
using Texts = APIRequest::Texts;

constexpr char kForm[] = "application/x-www-form-urlencoded";
constexpr char kJson[] = "application/json";

/// Reads a request whose body stands in a file. For one that cannot be used its status.
class Read {
 public:
    Read(const Texts& environment, const std::string& body,
         const MERO::ParamCheck& check = nullptr) {
        const int file = memfd_create("body", 0);
        EXPECT_EQ(write(file, body.data(), body.size()), static_cast<ssize_t>(body.size()));
        lseek(file, 0, SEEK_SET);
        try {
            const APIRequest request = MERO::ReadCgiRequest(environment, file, check);
            params_ = test::TextOf(request.GetParams());
            caller_ = request.GetLoginUserName() + " " + std::to_string(request.GetLoginUID()) +
                      " " + request.GetRemoteIP();
        } catch (const MERO::CgiRequestError& error) {
            params_ = std::to_string(error.status());
            EXPECT_STRNE(error.what(), "");
        }
        rest_ = static_cast<long>(body.size()) - lseek(file, 0, SEEK_CUR);
        close(file);
    }

    std::string params_;
    std::string caller_;
    long rest_;  ///< bytes of the body that were left alone
};

Texts Post(const std::string& type, std::size_t length) {
    return {{"REQUEST_METHOD", "POST"},
            {"CONTENT_TYPE", type},
            {"CONTENT_LENGTH", std::to_string(length)}};
}

TEST(CgiRequest, ReadsAQueryString) {
    const test::Table<std::string, std::string> rows = {
        {"", "{}"},
        {"limit=5&query=a", R"({"limit":"5","query":"a"})"},
        {"q=a+b%2Bc%20d", R"({"q":"a b+c d"})"},
        {"q=gr%C3%BC%c3%9fe", R"({"q":"grüße"})"},
        {"q=1&q=2&q=3", R"({"q":"3"})"},
        {"q=1&&&q=&x", R"({"q":"","x":""})"},
        {"a%3Db=c=d", R"({"a=b":"c=d"})"},
        {"=v", R"({"":"v"})"},
        {"q=100%&r=%4&s=%zz&t=%+1", R"({"q":"100%","r":"%4","s":"%zz","t":"% 1"})"},
        {"q=%00", R"({"q":"\u0000"})"},
        {"q=" + std::string(MERO::kCgiQueryLimit - 2, 'x'),
         R"({"q":")" + std::string(MERO::kCgiQueryLimit - 2, 'x') + R"("})"},
        {"q=" + std::string(MERO::kCgiQueryLimit - 1, 'x'), "414"},
    };
    for (const auto& [query, params] : rows) {
        // GET requests have no body, whatever a client claims.
        const Read read({{"REQUEST_METHOD", "GET"},
                         {"QUERY_STRING", query},
                         {"CONTENT_TYPE", kForm},
                         {"CONTENT_LENGTH", "7"}},
                        "limit=9");
        EXPECT_EQ(read.params_, params) << query.substr(0, 40);
        EXPECT_EQ(read.rest_, 7);
    }
}

TEST(CgiRequest, KeepsBytesThatAreNoUtf8) {
    const int no_body = -1;
    const APIRequest request = MERO::ReadCgiRequest({{"QUERY_STRING", "q=%FF%fe"}}, no_body);
    EXPECT_EQ(request.GetAndCheckString("q", MERO::PARAM_OPTIONAL, nullptr).Get(), "\xff\xfe");
}

TEST(CgiRequest, ReadsABody) {
    const std::string longest = R"({"q":")" + std::string(MERO::kCgiBodyLimit - 8, 'x') + R"("})";
    ASSERT_EQ(longest.size(), MERO::kCgiBodyLimit);
    const test::Table<const char*, const char*, std::string, std::string> rows = {
        {"form", kForm, "query=x+y&a=1", R"({"a":"1","limit":"1","query":"x y"})"},
        {"form over query string", kForm, "limit=2", R"({"limit":"2"})"},
        {"JSON", kJson, R"({"query":"x","n":[1]})", R"({"limit":"1","n":[1],"query":"x"})"},
        {"JSON over query string", kJson, R"({"limit":2})", R"({"limit":2})"},
        {"last of two members", kJson, R"({"limit":2,"limit":3})", R"({"limit":3})"},
        {"type in other letters", "Application/JSON;charset=utf-8", R"({"limit":2})",
         R"({"limit":2})"},
        {"longest", kJson, longest, R"({"limit":"1",)" + longest.substr(1)},
        {"none", "", "", R"({"limit":"1"})"},
        {"too long", kJson, longest + " ", "413"},
        {"no object", kJson, "[1]", "400"},
        {"no JSON", kJson, "limit=2", "400"},
        {"two documents", kJson, "{}{}", "400"},
        {"nested", kJson, std::string(MERO::kCgiBodyLimit, '['), "400"},
        {"of another kind", "multipart/form-data; boundary=x", "--x--", "415"},
        {"without a type", "", "limit=2", "415"},
    };
    for (const auto& [name, type, body, params] : rows) {
        Texts environment = Post(type, body.size());
        environment["QUERY_STRING"] = "limit=1";
        EXPECT_EQ(Read(environment, body).params_, params) << name;
    }
}

TEST(CgiRequest, GoesByTheLengthOfTheBody) {
    const test::Table<const char*, const char*, long> rows = {
        {"3", R"({"a":"1"})", 5}, {"", "{}", 8},         {"0", "{}", 8},
        {"9", "400", 0},          {"-1", "400", 8},      {"3x", "400", 8},
        {" 3", "400", 8},         {"1048577", "413", 8}, {"99999999999999999999", "413", 8},
    };
    for (const auto& [length, params, rest] : rows) {
        Texts environment = Post(kForm, 0);
        environment["CONTENT_LENGTH"] = length;
        const Read read(environment, "a=1&b=23");
        EXPECT_EQ(read.params_, params) << length;
        EXPECT_EQ(read.rest_, rest) << length;
    }
    EXPECT_EQ(Read({{"REQUEST_METHOD", "POST"}, {"CONTENT_TYPE", kForm}}, "a=1").params_, "{}");
}

TEST(CgiRequest, KnowsTheCaller) {
    const auto caller = [](const std::string& user) {
        return Read({{"REMOTE_USER", user}, {"REMOTE_ADDR", "2001:db8::7"}}, "").caller_;
    };
    EXPECT_EQ(caller("admin"), "admin 1024 2001:db8::7");
    EXPECT_EQ(caller("no such user"), "no such user 65534 2001:db8::7");
    EXPECT_EQ(caller(""), " 65534 2001:db8::7");
}

TEST(CgiRequest, LetsTheProgramRestrictParameters) {
    const auto check = [](const std::string& key, const Json::Value& value) {
        return key != "db_path" || value == "/inside";
    };
    const test::Table<const char*, const char*, const char*> rows = {
        {"limit=1", "{}", R"({"limit":"1"})"},
        {"db_path=%2Finside", "{}", R"({"db_path":"/inside"})"},
        {"db_path=/etc/shadow", "{}", "403"},
        {"db_path=/inside", R"({"db_path":"/etc/shadow"})", "403"},
        {"", R"({"db_path":["/inside"]})", "403"},
    };
    for (const auto& [query, body, params] : rows) {
        Texts environment = Post(kJson, std::string(body).size());
        environment["QUERY_STRING"] = query;
        EXPECT_EQ(Read(environment, body, check).params_, params) << query << " " << body;
    }
}

}  // namespace
