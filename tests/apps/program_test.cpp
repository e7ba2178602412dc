#include <gmock/gmock.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "support/program.h"
#include "support/table.h"

namespace {

using test::Ended;
using test::Program;
using testing::HasSubstr;

TEST(Program, TellsWhatItIs) {
    const Program::Result result = Program::Run({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output.rfind("mailserver-log 4.", 0), 0U) << result.output;
}

TEST(Program, RefusesAWrongCommandLine) {
    const test::Table<std::vector<std::string>, const char*> rows = {
        {std::vector<std::string>{}, "subcommand"},
        {{"call", "x", "--uid", "-1"}, "--uid"},
        {{"call", "x", "--exec", "API", "get"}, "--exec"},
        {{"call", "x", "--exec", "API", "get", "one"}, "--exec"},
        {{"call", "x", "--exec", "API", "get", "1", "--body", "-"}, "--body"},
        {{"call", "x", "--params", "-", "--body", "-"}, "standard input"},
        {{"load", "none"}, "none"},
        {{"load", "mail", "--batch", "0"}, "--batch"},
        {{"list", "admin", "--subject", "x"}, "--subject"},
        {{"list", "mail", "--status", "gone"}, "gone is no status"},
        {{"list", "admin", "--type", "spam"}, "spam is no number"},
        {{"list", "mail", "--sort", "none"}, "take one of date, size"},
        {{"list", "mail", "--limit", "-1"}, "--limit"},
        {{"list", "mail", "--since", "soon"}, "\"soon\" is no time"},
        {{"list", "mail", "--follow", "--sort", "size"}, "--follow"},
        {{"list", "mail", "--follow", "--format", "json"}, "take ndjson"},
        {{"query", "mail.users"}, "mail.users not in"},
        {{"export", "mail", "--format", "table"}, "--format"},
        {{"export", "mail", "--limit", "1"}, "has all rows"},
        {{"export", "mail", "--sort", "none"}, "take one of date, size"},
    };
    for (const auto& [arguments, error] : rows) {
        SCOPED_TRACE(error);
        EXPECT_THAT(Program::Run(arguments), Ended(2, "", HasSubstr(error)));
    }
    struct stat status = {};
    EXPECT_NE(stat("/var/spool/@PostCube-Server/aggr_log/aggr_mail_log.db", &status), 0)
        << "a store was made";
}

}  // namespace
