// The configuration files and --dump-config.

#include <gmock/gmock.h>

#include <string>

#include "support/program.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using test::Ended;
using test::Program;
using test::WriteTextFile;
using testing::AllOf;
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

const std::string kFile = "/tmp/first.conf";
const std::string kLaterFile = "/tmp/later.conf";

TEST(Configuration, TakesTheCommandLineThenTheLastFileThenTheFirst) {
    WriteTextFile(kFile, "# ours\n[statistics]\nperiod=60\ncycles=2\n[list]\nformat=\"csv\"\n");
    WriteTextFile(kLaterFile, "[statistics]\ncycles=3\n");
    const Program::Result result =
        Program::Run({"--config", kFile + "," + kLaterFile, "--dump-config", "list", "admin",
                      "--format", "json", "--follow"});
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, AllOf(HasSubstr("\nperiod=\"60\"\n"), HasSubstr("\ncycles=\"3\"\n"),
                                     HasSubstr("\nformat=\"json\"\n"), HasSubstr("\nfollow=true\n"),
                                     HasSubstr("\n#journal=\n")));
    EXPECT_THAT(result.output,
                Not(AnyOf(HasSubstr("\"csv\""), HasSubstr("#help"), HasSubstr("#STORE"))));

    WriteTextFile(kFile, result.output);
    EXPECT_EQ(Program::Run({"--config", kFile, "--dump-config"}).output, result.output)
        << "what is written can be read";
}

TEST(Configuration, ReachesTheSubcommandThatRuns) {
    WriteTextFile(kFile, "[trace]\nformat=csv\n");
    EXPECT_THAT(Program::Run({"--config", kFile, "trace", "x"}),
                Ended(2, testing::_, HasSubstr("csv not in {table,json}")));
}

TEST(Configuration, RefusesWhatItDoesNotKnow) {
    const test::Table<const char*, const char*> rows = {
        {"[statistics]\nperiods=60\n", "statistics.periods; mend the configuration"},
        {"[statistic]\nperiod=60\n", "statistic."},
        {"period=60\n", "parse period; mend the configuration"},
        {"[statistics]\nperiod=0\n", "--period"},
        {"[list]\nSTORE=admin\n", "list.STORE"},
        {"[list]\nhelp=true\n", "list.help"},
    };
    for (const auto& [text, error] : rows) {
        WriteTextFile(kFile, text);
        const Program::Result result = Program::Run({"--config", kFile, "status"});
        EXPECT_EQ(result.status, 2) << text;
        EXPECT_THAT(result.error, HasSubstr(error)) << text;
    }
    EXPECT_EQ(Program::Run({"--config", "/tmp/none.conf", "status"}).status, 2);
}

}  // namespace
