#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "apps/admin_line.h"
#include "support/json_value.h"
#include "support/program.h"
#include "support/small_volume.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_lock.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using test::AdminLine;
using test::Ended;
using test::EscapedAdminLine;
using test::Program;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

using Texts = std::vector<std::string>;

const std::string kStore = test::kSpool + "admin_log.db";
const std::string kRejected = test::kSpool + "rejected.log";

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) {
        ++count;
    }
    return count;
}

/// What WaitForOutput takes: so many confirmations.
std::function<bool(const std::string&)> Confirmed(std::size_t times) {
    return [times](const std::string& output) { return Count(output, "OK\n") == times; };
}

Texts Statements() {
    return test::RunOnFile(kStore, "SELECT statement FROM admin_log ORDER BY rowid");
}

class Collect : public testing::Test {
 protected:
    Collect() { test::EmptySpool(); }

    /// Makes the store.
    static void CollectOne() {
        EXPECT_EQ(Program::Run({"collect"}, AdminLine("first")).output,
                  "collected 1, rejected 0, skipped 0\n");
    }
};

TEST_F(Collect, TakesWhatItCanAndKeepsWhatItCannot) {
    const std::string cut = AdminLine("cut").substr(0, 90);
    const std::string log = std::string("\0\xff garbage\n\r\n", 13) + EscapedAdminLine("a#011") +
                            cut + "\nNov 22 10:00:00 nas cgi: " + AdminLine("b\n") + "\r\n" +
                            AdminLine("c", std::string(1 << 20, ' ') + "{}") + "\n" +
                            AdminLine("d", "{") + "\n" + std::string(3 << 20, 'x') + "\n" +
                            AdminLine(std::string(3 << 20, 'y')) + "\n" + EscapedAdminLine("e") +
                            AdminLine("last").substr(0, 150);
    test::WriteTextFile("/tmp/log", log);
    const Program::Result result = Program::Run({"collect", "--input", "/tmp/log"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "collected 4, rejected 4, skipped 4\n");
    EXPECT_THAT(Statements(), ElementsAre("a\t", "b\n", "c", "e"));
    EXPECT_EQ(Count(result.error, "rejected a line"), 4U);
    EXPECT_LT(result.error.size(), 4000U);

    struct stat status = {};
    ASSERT_EQ(stat(kRejected.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    const std::string rejected = test::ReadTextFile(kRejected);
    EXPECT_EQ(Count(rejected, "\n"), 4U);
    EXPECT_THAT(rejected, HasSubstr("\tthe record is cut short\t" + cut + "\n"));
    EXPECT_THAT(rejected, HasSubstr("\tWEBAPI_PARAM is no JSON that can be read\t"));
    EXPECT_THAT(rejected, HasSubstr("\tthe record is longer than 2097152 bytes\t"));
    EXPECT_THAT(rejected, HasSubstr(R"("WEBAPI_PARAM":"{#012"})"));
}

TEST_F(Collect, WaitsForAStoreThatIsLocked) {
    CollectOne();
    Program program({"collect"});
    {
        const test::StoreLock lock(kStore);
        program.Write(AdminLine("second") + "\n");
        program.WaitForError("cannot store lines in " + kStore);
        program.Write(AdminLine("third") + "\n");
    }
    const Program::Result result = program.Wait();
    EXPECT_EQ(result.output, "collected 2, rejected 0, skipped 0\n");
    EXPECT_THAT(result.error, HasSubstr("database is locked"));
    EXPECT_EQ(Count(result.error, "\n"), 2U) << result.error;
    EXPECT_THAT(Statements(), ElementsAre("first", "second", "third"));
}

TEST_F(Collect, WaitsForRoom) {
    const test::SmallVolume volume(test::kSpool);
    SKIP_UNLESS_MOUNTED(volume);
    const std::string large(20000, 'x');
    for (const bool has_store : {true, false}) {
        SCOPED_TRACE(has_store ? "in its store" : "for a store");
        test::EmptySpool();
        Texts statements = {large, "third"};
        if (has_store) {
            CollectOne();
            statements.insert(statements.begin(), "first");
        }
        Program program({"collect"});
        volume.Limit(0);
        program.Write(AdminLine(large) + "\n" + AdminLine("bad", "{") + "\n" +
                      EscapedAdminLine("cut").substr(0, 99) + "\n" + AdminLine("third") + "\n");
        program.WaitForError("cannot ");
        volume.Limit(-1);
        const Program::Result result = program.Wait();
        EXPECT_EQ(result.output, "collected 2, rejected 2, skipped 0\n");
        EXPECT_THAT(result.error, HasSubstr(has_store ? "disk is full" : "too little room"));
        EXPECT_EQ(Statements(), statements);
        EXPECT_EQ(Count(test::ReadTextFile(kRejected), "\n"), 2U);
        EXPECT_THAT(test::RunOnFile(kStore, "PRAGMA integrity_check"), ElementsAre("ok"));
    }
}

TEST_F(Collect, FollowsAStoreThatGoesAway) {
    const test::Table<const char*, void (*)(), void (*)()> rows = {
        {"renamed", [] { std::filesystem::rename(kStore, kStore + ".old"); }, nullptr},
        {"removed", [] { std::filesystem::remove(kStore); }, nullptr},
        {"folder gone for a while",
         [] { std::filesystem::rename("/volume1/@PostCube-Server", "/volume1/away"); },
         [] {
             std::filesystem::remove_all("/volume1/away/aggr_log");
             std::filesystem::create_directory("/volume1/away/aggr_log");
             std::filesystem::rename("/volume1/away", "/volume1/@PostCube-Server");
         }},
    };
    for (const auto& [name, spoil, mend] : rows) {
        SCOPED_TRACE(name);
        std::filesystem::remove(kStore);
        Program program({"collect", "--confirm"});
        program.Write(EscapedAdminLine("before"));
        program.WaitForOutput(Confirmed(2));
        spoil();
        program.Write(EscapedAdminLine("after"));
        if (mend != nullptr) {
            program.WaitForError("cannot store lines");
            mend();
        }
        program.WaitForOutput(Confirmed(3));
        EXPECT_EQ(program.Wait().status, 0);
        EXPECT_THAT(Statements(), ElementsAre("after"));
    }
}

TEST_F(Collect, StoresWhatItHasReadWhenToldToStop) {
    Program program({"collect"});
    std::string log;
    // More than a pipe takes: when all is written, the program has stored some.
    for (int i = 0; i < 20000; ++i) {
        log += AdminLine(std::to_string(i)) + "\n";
    }
    program.Write(log);
    program.Signal(SIGTERM);
    const Program::Result result = program.Wait();
    EXPECT_EQ(result.status, 0);
    const Texts statements = Statements();
    EXPECT_THAT(result.output, HasSubstr("collected " + std::to_string(statements.size()) + ","));
    for (std::size_t i = 0; i < statements.size(); ++i) {
        ASSERT_EQ(statements[i], std::to_string(i));
    }
}

TEST_F(Collect, ConfirmsEachLineOnceItIsStored) {
    Program program({"collect", "--confirm"});
    program.WaitForOutput([](const std::string& output) { return output == "OK\n"; });
    program.Write(EscapedAdminLine("a"));
    program.WaitForOutput(Confirmed(2));
    EXPECT_THAT(Statements(), ElementsAre("a"));
    program.Write(EscapedAdminLine("cut").substr(0, 99) + "\n");
    program.WaitForOutput(Confirmed(3));
    EXPECT_THAT(test::ReadTextFile(kRejected), HasSubstr("cut short"));
    program.Write("another line\n");
    program.WaitForOutput(Confirmed(4));
    EXPECT_THAT(program.Wait(),
                Ended(0, "OK\nOK\nOK\nOK\n", HasSubstr("collected 1, rejected 1, skipped 1\n")));
}

TEST_F(Collect, ConfirmsTransactions) {
    Program program({"collect", "--confirm"});
    program.Write("BEGIN TRANSACTION\n" + EscapedAdminLine("a") + "x\n" + EscapedAdminLine("b"));
    const std::string begun = "OK\nOK\nDEFER_COMMIT\nDEFER_COMMIT\nDEFER_COMMIT\n";
    program.WaitForOutput([&begun](const std::string& output) { return output == begun; });
    EXPECT_FALSE(std::filesystem::exists(kStore));
    program.Write("COMMIT TRANSACTION\n");
    program.WaitForOutput([&begun](const std::string& output) { return output == begun + "OK\n"; });
    EXPECT_THAT(Statements(), ElementsAre("a", "b"));
    // One that is not committed comes again at the next start.
    program.Write("BEGIN TRANSACTION\n" + EscapedAdminLine("c"));
    EXPECT_THAT(program.Wait().error, HasSubstr("collected 2, rejected 0, skipped 1\n"));
    EXPECT_THAT(Statements(), ElementsAre("a", "b"));
}

TEST_F(Collect, ShowsLifeWhileAConfirmationTakesItsTime) {
    CollectOne();
    Program program({"collect", "--confirm"});
    {
        const test::StoreLock lock(kStore);
        program.Write(EscapedAdminLine("second"));
        program.WaitForOutput([](const std::string& output) { return output == "OK\n."; });
    }
    EXPECT_THAT(program.Wait().output, MatchesRegex("OK\n\\.+OK\n"));
    EXPECT_THAT(Statements(), ElementsAre("first", "second"));
}

// rsyslog, when it stops, forgets the line that it has no answer for.
TEST_F(Collect, KeepsTheLineInHandWhenToldToStop) {
    CollectOne();
    const test::Table<Texts, const char*> rows = {
        {{"collect"}, "collected 0, rejected 1, skipped 0\n"},
        {{"collect", "--confirm"}, "OK\n\\.*OK\n"},
    };
    for (const auto& [arguments, output] : rows) {
        SCOPED_TRACE(output);
        std::filesystem::remove(kRejected);
        Program program(arguments);
        const test::StoreLock lock(kStore);
        program.Write(EscapedAdminLine("second"));
        program.WaitForError("cannot store lines");
        program.Signal(SIGTERM);
        EXPECT_THAT(program.Wait(), Ended(1, MatchesRegex(output), testing::_));
        EXPECT_THAT(test::ReadTextFile(kRejected),
                    MatchesRegex("[^\n]*\tstopped while[^\n]*second[^\n]*\n"));
    }
}

TEST_F(Collect, LosesAndDoublesNothingWhenKilled) {
    Texts confirmed;
    for (int round = 0; round < 5; ++round) {
        Program program({"collect", "--confirm"});
        for (std::size_t i = 1; i <= 7; ++i) {
            const std::string statement = std::to_string(round) + "." + std::to_string(i);
            program.Write(EscapedAdminLine(statement));
            program.WaitForOutput(Confirmed(i + 1));
            confirmed.push_back(statement);
        }
        program.Write(EscapedAdminLine("unconfirmed"));
        program.Signal(SIGKILL);
    }
    Texts statements = Statements();
    statements.erase(std::remove(statements.begin(), statements.end(), "unconfirmed"),
                     statements.end());
    EXPECT_EQ(statements, confirmed);
}

void Send(const std::string& path, const std::string& message) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM, 0);
    EXPECT_EQ(sendto(descriptor, message.data(), message.size(), 0,
                     reinterpret_cast<const sockaddr*>(&address), sizeof address),
              static_cast<ssize_t>(message.size()));
    close(descriptor);
}

TEST_F(Collect, ListensOnASocket) {
    const std::string path = "/tmp/log.socket";
    Program program({"collect", "--socket", path});
    program.WaitForError("listening on " + path);
    Send(path, "<16>Nov 22 10:00:00 cgi: " + AdminLine("a\nb"));
    Send(path, "<22>Nov 22 10:00:00 smtpd: connect");
    Send(path, "<22>Nov 22 10:00:00 cgi: " + AdminLine("not of that priority"));
    EXPECT_EQ(Program::Run({"collect", "--socket", path}).status, 1);
    program.Signal(SIGTERM);
    EXPECT_THAT(program.Wait(), Ended(0, "collected 1, rejected 1, skipped 1\n", testing::_));
    EXPECT_THAT(Statements(), ElementsAre("a\nb"));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Collect, GoesOnInTheJournalWhereItEnded) {
    std::filesystem::create_directory("/tmp/bin");
    test::WriteTextFile("/tmp/bin/journalctl",
                        "#!/bin/sh\n"
                        "echo \"$@\" >> /tmp/journal.arguments\n"
                        "case \"$*\" in *after-cursor=s=2*) exit 0; esac\n"
                        "cat /tmp/journal.entries\n",
                        0755);
    std::string bytes = "[255";
    for (const char c : AdminLine("b")) {
        bytes += "," + std::to_string(c);
    }
    test::WriteTextFile("/tmp/journal.entries",
                        "{\"__CURSOR\":\"s=1\",\"MESSAGE\":" + test::TextOf(AdminLine("a\x01")) +
                            "}\n" + "{\"__CURSOR\":\"s=2\",\"MESSAGE\":" + bytes + "]}\n");
    const Program::Environment environment = {
        {"PATH", "/tmp/bin:" + std::string(std::getenv("PATH"))}};
    const Program::Result first = Program::Run({"collect", "--journal", "--once"}, {}, environment);
    EXPECT_EQ(first.output, "collected 1, rejected 1, skipped 0\n") << first.error;
    EXPECT_THAT(Statements(), ElementsAre("a\x01"));
    const Program::Result second =
        Program::Run({"collect", "--journal", "--once"}, {}, environment);
    EXPECT_EQ(second.output, "collected 0, rejected 0, skipped 0\n") << second.error;
    EXPECT_THAT(test::ReadTextFile("/tmp/journal.arguments"),
                MatchesRegex("[^\n]*--facility=mail --priority=emerg..emerg\n[^\n]*=s=2\n"));
}

TEST_F(Collect, EndsAtOnceWhereItCannotWork) {
    const test::Table<const char*, Texts, int, const char*> rows = {
        {"no such file", {"collect", "--input", "/tmp/none"}, 1, "cannot open /tmp/none: No such"},
        {"a folder", {"collect", "--input", "/tmp"}, 1, "cannot read the input: Is a directory"},
        {"no such folder", {"collect", "--socket", "/none/s"}, 1, "cannot listen on /none/s"},
        {"two sources", {"collect", "--journal", "--socket", "/tmp/s"}, 2, "--journal"},
        {"too much", {"collect", "more"}, 2, "more"},
    };
    for (const auto& [name, arguments, status, error] : rows) {
        SCOPED_TRACE(name);
        EXPECT_THAT(Program::Run(arguments), Ended(status, testing::_, HasSubstr(error)));
    }
    std::filesystem::rename(test::kSpool, "/volume1/away");
    const Program::Result result = Program::Run({"collect"}, AdminLine("a"));
    std::filesystem::rename("/volume1/away", test::kSpool);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, HasSubstr("cannot write to the folder " + test::kSpool));
}

}  // namespace
