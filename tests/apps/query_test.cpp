#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/program.h"
#include "support/spool.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using test::Ended;
using test::Program;
using testing::HasSubstr;

using Texts = std::vector<std::string>;

constexpr char kTitles[] = "/tmp/titles";
constexpr char kLabels[] = "/tmp/labels";
constexpr char kParams[] = "/tmp/params";

class Query : public testing::Test {
 protected:
    Query() {
        test::EmptySpool();
        test::WriteTextFile(kTitles, R"({"20":"Queue"})");
        test::WriteTextFile(kLabels, R"({"maillog":{"admin_log":"The log"}})");
    }

    static Program::Result Run(Texts arguments, const std::string& input = {}) {
        arguments.insert(arguments.begin(), "query");
        return Program::Run(arguments, input, {{"TZ", "UTC0"}});
    }

    static void Load(const std::string& store, const std::string& rows) {
        const Program::Result result = Program::Run({"load", store}, rows);
        ASSERT_EQ(result.status, 0) << result.error;
    }

    static void LoadAdmin() {
        Load("admin", R"({"date":1,"tab_type":20,"user":"ann","statement":"<Gr\u00fc\u00dfe>"})"
                      "\n"
                      R"({"date":2,"tab_type":21,"user":"ann"})");
    }
};

TEST_F(Query, PrintsTheReplyOfBothForms) {
    LoadAdmin();
    const std::string page = R"({"log_list":[{"date":"1970-01-01 00:00:01","ip":"","server":"",)"
                             "\"statement\":\"<Gr\xc3\xbc\xc3\x9f"
                             R"(e>","tab_type":20,"user":"ann"}],"offset":1,"total":2})";
    const std::string nothing = R"({"log_list":[],"offset":0,"total":0})";
    const test::Table<Texts, const char*, std::string> rows = {
        {{"admin.list", "-"}, R"({"offset":1,"limit":1})", page},
        {{"admin.list", "-"}, R"({"query":"queue"})", nothing},
        {{"admin.users"}, "", R"({"users":[{"user":"ann"}]})"},
        {{"mail.list"}, "", nothing},
        {{"security.list"}, "", nothing},
    };
    for (const auto& [words, input, data] : rows) {
        SCOPED_TRACE(data);
        Program::Result result = Run(words, input);
        EXPECT_EQ(result.status, 0) << result.error;
        EXPECT_EQ(result.output, R"({"code":0,"data":)" + data + "}\n");
        Texts arguments = words;
        arguments.emplace_back("--request");
        result = Run(arguments, input);
        EXPECT_EQ(result.status, 0) << result.error;
        EXPECT_EQ(result.output, R"({"success":true,"data":)" + data + "}\n");
    }
}

TEST_F(Query, HandsTitlesAndLabelsToTheMethodsThatHaveThem) {
    LoadAdmin();
    test::WriteTextFile(kParams, R"({"query":"queue"})");
    EXPECT_THAT(Run({"admin.list", kParams, "--titles", kTitles}).output,
                HasSubstr(R"("total":1})"));
    const std::string document =
        Run({"admin.export", kParams, "--titles", kTitles, "--texts", kLabels}).output;
    EXPECT_THAT(document, HasSubstr("<title>The log</title>"));
    EXPECT_THAT(document, HasSubstr(">Queue</td>"));

    EXPECT_THAT(Run({"mail.list", "--titles", kTitles}),
                Ended(0, testing::_, "mailserver-log: mail.list does not use --titles\n"));
}

TEST_F(Query, WritesADocumentAndNothingElse) {
    for (const char* method : {"admin.export", "mail.export", "security.export"}) {
        const Program::Result json = Run({method});
        EXPECT_EQ(json.status, 0) << json.error;
        EXPECT_THAT(json.output, testing::StartsWith("Content-Type:"));
        EXPECT_THAT(json.output, testing::EndsWith("</table></body></html>\n"));
        EXPECT_THAT(Run({method, "--request"}), Ended(0, json.output, testing::_));
    }
}

TEST_F(Query, FailsWithTheCode) {
    test::WriteTextFile(kParams, R"({"db_path":"/nowhere/x.db"})");
    const test::Table<Texts, const char*, const char*> rows = {
        {{"mail.list", kParams},
         "{\"code\":117,\"data\":{\"reason\":\"Unknown Failure!\"}}\n",
         "mail.list failed with code 117: Unknown Failure!"},
        {{"mail.list", kParams, "--request"},
         "{\"success\":false,\"error\":{\"code\":117}}\n",
         "mail.list failed with code 117"},
        {{"mail.export", kParams}, "", "mail.export failed with code 117: Unknown Failure!"},
        {{"mail.export", kParams, "--request"}, "", "mail.export failed with code 117"},
        {{"mail.list", "/nowhere"}, "", "cannot open /nowhere"},
        {{"mail.list", "--titles", kParams, "/etc/passwd"}, "", "is no JSON"},
    };
    for (const auto& [words, output, error] : rows) {
        SCOPED_TRACE(error);
        EXPECT_THAT(Run(words), Ended(1, output, HasSubstr(error)));
    }
}

TEST_F(Query, EndsQuietlyWhenItsReaderGoes) {
    std::string rows;
    for (int i = 0; i < 2000; ++i) {  // more than a pipe holds
        rows += R"({"date":1,"user":"ann","statement":"A statement of some length"})"
                "\n";
    }
    Load("admin", rows);
    for (const char* method : {"admin.list", "admin.export"}) {
        SCOPED_TRACE(method);
        Program program({"query", method});
        program.CloseOutput();
        EXPECT_THAT(program.Wait(), Ended(1, testing::_, ""));
    }
}

}  // namespace
