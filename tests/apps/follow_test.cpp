#include <gmock/gmock.h>
#include <signal.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/table.h"

namespace {

using test::Ended;
using test::Program;

const std::string kStore = test::kSpool + "aggr_security_log.db";

std::string Row(int date, const std::string& subject) {
    return R"({"date":)" + std::to_string(date) + R"(,"type":"spam","subject":")" + subject +
           "\"}\n";
}

void Load(const std::string& rows) {
    const Program::Result result = Program::Run({"load", "security"}, rows);
    ASSERT_EQ(result.status, 0) << result.error;
}

/// A listing that follows the security log.
class Follow : public testing::Test {
 protected:
    Follow() { test::EmptySpool(); }

    void Start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"list", "security", "--follow"});
        program_.emplace(arguments, Program::Environment{{"TZ", "UTC0"}});
    }

    /// Starts it, and waits until all rows so far are shown, the last of them `last`.
    void StartBehind(const std::string& last) {
        Start({"--format", "ndjson"});
        WaitFor(last);
    }

    void WaitFor(const std::string& subject) {
        program_->WaitForOutput([&](const std::string& output) {
            return output.find('"' + subject + '"') != std::string::npos;
        });
    }

    Program::Result Stop(int signal = SIGTERM) {
        program_->Signal(signal);
        return program_->Wait();
    }

    /// The subjects shown, with blanks between.
    static std::string Subjects(const std::string& output) {
        std::string subjects;
        const std::string name = "\"subject\":\"";
        for (std::size_t at = 0; (at = output.find(name, at)) != std::string::npos;) {
            at += name.size();
            subjects +=
                (subjects.empty() ? "" : " ") + output.substr(at, output.find('"', at) - at);
        }
        return subjects;
    }

    std::optional<Program> program_;
};

TEST_F(Follow, ShowsRowsAsTheyAreAdded) {
    Load(Row(20, "b") + Row(10, "a"));
    StartBehind("b");
    Load(Row(5, "old"));
    WaitFor("old");
    std::string many;
    for (int i = 0; i < 2500; ++i) {
        many += Row(30, "m");
    }
    Load(many + Row(40, "last"));
    WaitFor("last");
    const Program::Result result = Stop(SIGINT);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    const std::string subjects = Subjects(result.output);
    EXPECT_EQ(subjects.substr(0, 12), "a b old m m ");
    EXPECT_EQ(std::count(subjects.begin(), subjects.end(), 'm'), 2500);
}

TEST_F(Follow, SurvivesRotation) {
    // Dates before 100 are those that rotation takes away.
    Load(Row(120, "kept") + Row(110, "also_kept") + Row(50, "gone"));
    StartBehind("kept");
    // The row that comes gets the number of the one that goes.
    test::RunOnFile(kStore,
                    "BEGIN; DELETE FROM security_log_table WHERE date < 100;"
                    "INSERT INTO security_log_table SELECT 130, src, type, event, host, sender,"
                    " recipient, 'new' FROM security_log_table LIMIT 1; COMMIT");
    WaitFor("new");
    test::RunOnFile(kStore,
                    "BEGIN; DELETE FROM security_log_table;"
                    "INSERT INTO security_log_table(date, subject) VALUES (200, 'first'),"
                    " (201, 'second'), (202, 'third'), (203, 'fourth'); COMMIT");
    WaitFor("fourth");
    EXPECT_EQ(Subjects(Stop().output), "gone also_kept kept new first second third fourth");
}

TEST_F(Follow, SurvivesTheReplacementOfTheFile) {
    Load(Row(1, "a"));
    StartBehind("a");
    std::filesystem::rename(kStore, kStore + ".1");
    Load(Row(2, "in_a_new_store"));
    WaitFor("in_a_new_store");
    test::RunOnFile(kStore + ".1",
                    "INSERT INTO security_log_table(date, subject) VALUES (3, 'added')");
    std::filesystem::rename(kStore + ".1", kStore);
    WaitFor("added");
    EXPECT_EQ(Stop().status, 0);
}

TEST_F(Follow, BeginsAndFiltersAsAsked) {
    std::string rows;
    for (int i = 10; i < 30; ++i) {
        rows += Row(i, std::to_string(i));
    }
    Load(rows);
    const test::Table<std::vector<std::string>, const char*> cases = {
        {std::vector<std::string>{}, "20 21 22 23 24 25 26 27 28 29 x 9"},
        {{"--limit", "2"}, "28 29 x 9"},
        {{"--since", "1970-01-01 00:00:27"}, "27 28 29 x 9"},
        {{"--subject", "9"}, "19 29 9"},
    };
    for (const auto& [options, subjects] : cases) {
        SCOPED_TRACE(subjects);
        test::RunOnFile(kStore, "DELETE FROM security_log_table WHERE date > 29");
        std::vector<std::string> arguments = options;
        arguments.insert(arguments.end(), {"--format", "ndjson"});
        Start(arguments);
        WaitFor("29");
        Load(Row(30, "x") + Row(31, "9"));
        WaitFor("9");
        EXPECT_EQ(Subjects(Stop().output), subjects);
    }
}

TEST_F(Follow, ShowsATableAtOnce) {
    Start({});
    Load(Row(1, "a"));
    program_->WaitForOutput([](const std::string& output) {
        return output.find("spam") != std::string::npos && output.back() == '\n';
    });
    EXPECT_EQ(Stop().output,
              "DATE                 TYPE  SOURCE  SENDER  RECIPIENT  SUBJECT  EVENT\n"
              "1970-01-01 00:00:01  spam                             a\n");
}

TEST_F(Follow, EndsWhenItsReaderGoes) {
    Load(Row(1, "a"));
    StartBehind("a");
    program_->CloseOutput();
    EXPECT_THAT(program_->Wait(), Ended(1, testing::_, ""));
}

}  // namespace
