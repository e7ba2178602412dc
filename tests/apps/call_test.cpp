#include <gmock/gmock.h>
#include <syslog.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using test::Ended;
using test::Program;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

using Texts = std::vector<std::string>;

constexpr char kFolder[] = "/var/spool/@PostCube-Server/aggr_log";
constexpr char kLine[] =
    R"x(\{"id":"MEROPostCube-Server","type":"admin_log","TAB_TYPE":20,)x"
    R"x("STATEMENT":"All mails in the queue were deleted.","USER":"%s","UID":%s,)x"
    R"x("EXEC_TIME":[0-9]+,"IP":"%s","SERVER":"\([^"]*\)","WEBAPI_PARAM":"%s)x"
    "\n\"\\}";

std::string LinePattern(const Texts& parts) {
    std::string pattern = kLine;
    for (const std::string& part : parts) {
        pattern.replace(pattern.find("%s"), 2, part);
    }
    return pattern;
}

class Call : public testing::Test {
 protected:
    Texts Lines() { return log_.TakeTexts(LOG_MAIL | LOG_EMERG); }

    test::SyslogSocket log_;
};

TEST_F(Call, WritesTheStatementToTheSystemLog) {
    EXPECT_THAT(Program::Run({"call", "Webapi_Queue_DeleteAll_v1"}), Ended(0, "", ""));
    EXPECT_THAT(Lines(),
                ElementsAre(MatchesRegex(LinePattern({"admin", "1024", "127.0.0.1", "\\{\\}"}))));
}

TEST_F(Call, TakesTheCallerAndTheParametersAsGiven) {
    test::WriteTextFile("/tmp/body", "[1]");
    const Program::Result result =
        Program::Run({"call", "Webapi_Queue_DeleteAll", "--params", "-", "--body", "/tmp/body",
                      "--user", "o\"neil", "--uid", "4294967295", "--ip", "2001:db8::1", "--echo"},
                     R"({"a": "b"})");
    EXPECT_EQ(result.status, 0) << result.error;
    const Texts lines = Lines();
    EXPECT_THAT(lines,
                ElementsAre(MatchesRegex(LinePattern(
                    {R"(o\\"neil)", "4294967295", "2001:db8::1", R"(\{\\"a\\":\\"b\\"\})"}))));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(result.output, lines[0] + "\n");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(Program::Run({"collect"}, result.output).output,
              "collected 1, rejected 0, skipped 0\n");
}

TEST_F(Call, IsSilentWhereNothingIsToBeLogged) {
    for (const Texts& arguments :
         {Texts{"call", "Webapi_None", "--echo"}, Texts{"call", "webapi_queue_deleteall"},
          Texts{"call", "Webapi_Queue_DeleteAll", "--error", "117"}}) {
        const Program::Result result = Program::Run(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output + result.error, "");
    }
    EXPECT_THAT(log_.Take(), IsEmpty());
}

TEST_F(Call, DoesNothingOnBadInput) {
    test::WriteTextFile("/tmp/list", "[]");
    test::WriteTextFile("/tmp/half", R"({"a":)");
    test::WriteTextFile("/tmp/two", "{} {}");
    test::WriteTextFile("/tmp/deep", std::string(5000, '['));
    const test::Table<Texts, const char*> rows = {
        {{"--params", "/tmp/none"}, "cannot open /tmp/none: No such file"},
        {{"--params", "/tmp"}, "cannot read /tmp: Is a directory"},
        {{"--params", "/tmp/list"}, "/tmp/list (the parameters) is no JSON object"},
        {{"--params", "/tmp/half"}, "/tmp/half (the parameters) is no JSON: * Line 1"},
        {{"--params", "/tmp/two"}, "is no JSON"},
        {{"--params", "-"}, "- (the parameters) is no JSON"},
        {{"--body", "/tmp/half"}, "/tmp/half (the body) is no JSON"},
        {{"--body", "/tmp/deep"}, "/tmp/deep (the body) is no JSON"},
    };
    for (const auto& [options, error] : rows) {
        SCOPED_TRACE(error);
        Texts arguments = {"call", "Webapi_Queue_DeleteAll"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_THAT(Program::Run(arguments), Ended(1, "", HasSubstr(error)));
    }
    std::filesystem::rename(kFolder, "/volume1/away");
    const Program::Result result = Program::Run({"call", "Webapi_Queue_DeleteAll", "--echo"});
    std::filesystem::rename("/volume1/away", kFolder);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.error, HasSubstr("cannot log Webapi_Queue_DeleteAll: Can't resolve"));
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(Call, RunsTheCallItself) {
    const std::string handler = "/var/packages/PostCube-Server/target/webapi/MERO.Test";
    const test::Table<const char*, const char*, std::size_t, const char*> rows = {
        {"success", R"({"success":true,"data":{"x":1}})", 1, ""},
        {"failure", R"({"success":false,"error":{"code":402}})", 0, "failed with code 402"},
        {"failure without a code", R"({"success":false})", 0, "failed with code 2"},
        {"rubbish", "rubbish", 0, "failed with code 2"},
    };
    for (const auto& [name, reply, lines, error] : rows) {
        SCOPED_TRACE(name);
        test::WriteTextFile(handler,
                            "#!/bin/sh\necho \"$@\" > /tmp/called\ncat >> /tmp/called\necho '" +
                                std::string(reply) + "'\n",
                            0755);
        EXPECT_THAT(Program::Run({"call", "Webapi_Queue_DeleteAll", "--user", "eve", "--params",
                                  "-", "--exec", "MERO.Test", "delete", "2"},
                                 R"({"p":7})"),
                    Ended(0, testing::_, HasSubstr(error)));
        EXPECT_EQ(Lines().size(), lines);
        EXPECT_THAT(test::ReadTextFile("/tmp/called"),
                    MatchesRegex("delete 2 eve\n\\{\"p\":7\\}\n?"));
    }
}

}  // namespace
