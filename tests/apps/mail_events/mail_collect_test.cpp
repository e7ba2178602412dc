#include <gmock/gmock.h>
#include <signal.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "mail_events/mail_collector.h"
#include "mail_events/mail_event_store.h"
#include "mail_events/state_file.h"
#include "process/stop_signal.h"
#include "support/program.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_lock.h"
#include "support/text_file.h"
#include "support/traced_child.h"

namespace serverlog::program {
namespace {

namespace fs = std::filesystem;
using test::Ended;
using test::kSpool;
using test::Program;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

using Lines = std::vector<std::string>;

const std::string kMailStore = kSpool + "aggr_mail_log.db";
const std::string kSecurityStore = kSpool + "aggr_security_log.db";
const std::string kHead = "2026-11-22T10:00:00Z mx1 postfix/";

// A mail that is deferred at first, its subject a line of the admin log, and a reject.
const Lines kLog = {
    kHead + "smtpd[1]: AAAAA: client=mx.example.org[198.51.100.7]",
    kHead + "cleanup[2]: AAAAA: message-id=<1@example.org>",
    kHead + R"(cleanup[2]: AAAAA: warning: header Subject: {"id":"MEROPostCube-Server",)" +
        R"("type":"admin_log"} from mx.example.org[198.51.100.7]; from=<bob@example.org>)",
    kHead + "qmgr[3]: AAAAA: from=<bob@example.org>, size=1234, nrcpt=1 (queue active)",
    kHead +
        "smtp[4]: AAAAA: to=<ann@example.com>, relay=none, dsn=4.4.1, status=deferred (timeout)",
    kHead +
        "smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: 554 5.7.1 <a@b>: Relay access "
        "denied; from=<eve@example.net> to=<a@b> proto=ESMTP helo=<x>",
    kHead +
        "smtp[4]: AAAAA: to=<ann@example.com>, relay=x[192.0.2.1]:25, dsn=2.0.0, status=sent "
        "(250 Ok)",
    kHead + "qmgr[3]: AAAAA: removed",
};
const std::string kMailRow = R"(3|bob@example.org|ann@example.com|{"id":"MEROPostCube-Server",)"
                             R"("type":"admin_log"})";

std::string Join(const Lines& lines, std::size_t from = 0, std::size_t to = std::string::npos) {
    std::string text;
    for (std::size_t i = from; i < std::min(to, lines.size()); ++i) {
        text += lines[i] + '\n';
    }
    return text;
}

Lines MailRows() {
    return test::RunOnFile(kMailStore,
                           "SELECT status, mail_from, mail_to, subject FROM mail_log_table "
                           "ORDER BY rowid");
}

Lines SecurityRows() {
    return test::RunOnFile(kSecurityStore, "SELECT type, src FROM security_log_table");
}

Lines State(const std::string& query) {
    return test::RunOnFile(state_file::kPath, query);
}

class MailCollect : public testing::Test {
 protected:
    MailCollect() { test::EmptySpool(); }

    static Program::Result Collect(const std::string& log) {
        return Program::Run({"collect", "--mail"}, log);
    }

    static void ExpectAllRows() {
        EXPECT_THAT(MailRows(), ElementsAre(kMailRow));
        EXPECT_THAT(SecurityRows(), ElementsAre("reject|203.0.113.5"));
        EXPECT_THAT(State("SELECT * FROM mail"), IsEmpty());
        EXPECT_THAT(State("SELECT * FROM recipient"), IsEmpty());
    }
};

TEST_F(MailCollect, StoresRowsOfAFileAndTellsOfEveryLine) {
    test::WriteTextFile("/tmp/mail.log", Join(kLog) + "Nov 22 10:00:00 mx1 sshd[1]: a\x1b[31m\n" +
                                             kHead + "smtpd[1]: connect from x[203.0.113.5]\n" +
                                             "Nov 22 10:00:00 mx1 -- MARK --\n\x1b[31m\xff\n");
    const Program::Result result = Program::Run({"collect", "--mail", "--input", "/tmp/mail.log"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "collected 1 mail, 1 security, skipped 3, unreadable 1\n");
    EXPECT_THAT(result.error, HasSubstr("by program: (none) 1, postfix/smtpd 1, sshd 1\n"));
    EXPECT_EQ(result.error.find('\x1b'), std::string::npos);
    ExpectAllRows();
    EXPECT_FALSE(fs::exists(kSpool + "admin_log.db"));
    EXPECT_EQ(Program::Run({"collect"}, Join(kLog)).output, "collected 0, rejected 1, skipped 7\n");

    const Program::Result status = Program::Run({"status"});
    EXPECT_THAT(status.output, HasSubstr("mail events: read up to 2026-11-22 "));
    EXPECT_THAT(status.output, HasSubstr("lines 12, mail 1, security 1, skipped 3, unreadable 1; "
                                         "in flight 0\n"));
    EXPECT_THAT(status.output, HasSubstr("by program: (none) 1, postfix/smtpd 1, sshd 1\n"));
}

TEST_F(MailCollect, StoresNothingTwice) {
    const std::string twice_in_a_second =
        kHead +
        "smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: 554 no; from=<a@b> to=<c@d>\n";
    const std::string log = Join(kLog) + twice_in_a_second + twice_in_a_second;
    EXPECT_EQ(Collect(log).output, "collected 1 mail, 3 security, skipped 0, unreadable 0\n");
    EXPECT_EQ(Collect(log).output, "collected 0 mail, 0 security, skipped 0, unreadable 0\n");
    EXPECT_EQ(Collect(Join(kLog, 6)).output,
              "collected 0 mail, 0 security, skipped 0, unreadable 0\n");
    const std::string later =
        "2026-11-22T10:00:01Z mx1 postfix/smtp[4]: AAAAA: to=<ann@example.com>, status=sent (Ok)\n";
    EXPECT_EQ(Collect(log + later + log + later).output,
              "collected 1 mail, 0 security, skipped 0, unreadable 0\n");
    EXPECT_EQ(MailRows().size(), 2U);
    EXPECT_EQ(SecurityRows().size(), 3U);
}

/// Gives two lines at a time, and keeps the place of what was stored in a file.
class PlacedSource : public MessageSource {
 public:
    static void Reset() { test::WriteTextFile(kPlace, "0\n"); }

    Arrival Next(std::string& line, bool) override {
        if (next_ >= kLog.size()) {
            return Arrival::kEnd;
        }
        if (next_ >= stored_ + 2) {
            return Arrival::kNothing;
        }
        line = kLog[next_++];
        return Arrival::kLine;
    }

    void Stored() override {
        stored_ = next_;
        test::WriteTextFile(kPlace + ".new", std::to_string(stored_) + "\n");
        fs::rename(kPlace + ".new", kPlace);
    }

 private:
    inline static const std::string kPlace = "/tmp/place";

    std::size_t stored_ = std::stoul(test::ReadTextFile(kPlace));
    std::size_t next_ = stored_;
};

void CollectPlaced() {
    PlacedSource source;
    MailEventStore store;
    const RejectedLog rejected(kSpool + "rejected_mail.log");
    const StopSignal stop;
    std::ostringstream talk;
    Retry retry(stop, talk);
    MailCollector(source, store, rejected, retry, talk).Run();
}

TEST_F(MailCollect, LosesAndDoublesNothingWhenKilledAnywhere) {
    const std::string prepared = "/tmp/prepared";
    MailEventStore().Key();
    fs::copy(kSpool, prepared, fs::copy_options::recursive);
    const auto start_anew = [&prepared] {
        test::EmptySpool();
        fs::copy(prepared, kSpool, fs::copy_options::recursive);
        PlacedSource::Reset();
    };
    start_anew();
    const std::size_t changes = test::CountChanges(CollectPlaced);
    ASSERT_GT(changes, 50U);
    for (std::size_t change = 0; change < changes; ++change) {
        SCOPED_TRACE("killed before change " + std::to_string(change));
        start_anew();
        ASSERT_EQ(test::KillBeforeChange(CollectPlaced, change), change);
        CollectPlaced();
        ExpectAllRows();
        if (HasFailure()) {
            return;
        }
    }
}

TEST_F(MailCollect, KnowsAMailByItsQueueIdBeforeTheFilter) {
    Collect(Join(kLog, 0, 2) +
            Join({kLog[3], kHead + "smtpd[5]: BBBBB: client=localhost[127.0.0.1]",
                  kHead + "cleanup[6]: BBBBB: message-id=<1@example.org>",
                  kHead + "smtp[4]: AAAAA: to=<ann@example.com>, status=sent (Ok: queued as BBBBB)",
                  kHead + "lmtp[7]: BBBBB: to=<ann@example.com>, status=sent (Saved)"}));
    EXPECT_EQ(MailRows().size(), 1U);
    EXPECT_THAT(Program::Run({"trace", "AAAAA"}).output, HasSubstr(" BBBBB "));
}

TEST_F(MailCollect, WaitsForAStoreThatIsLocked) {
    Collect("");
    for (const std::string& path : {kMailStore, kSecurityStore, state_file::kPath}) {
        SCOPED_TRACE(path);
        Program program({"collect", "--mail"});
        {
            const test::StoreLock lock(path);
            program.Write(Join(kLog));
            program.WaitForError("mailserver-log: cannot ");
        }
        EXPECT_EQ(program.Wait().status, 0);
        ExpectAllRows();
    }
}

TEST_F(MailCollect, FollowsFilesThatGoAway) {
    Program program({"collect", "--mail", "--confirm"});
    const auto write = [&program](const std::string& line, const std::string& output) {
        program.Write(line + "\n");
        program.WaitForOutput([&](const std::string& text) { return text == output; });
    };
    write(kLog[6], "OK\nOK\n");
    test::EmptySpool();
    write(kHead + "smtp[4]: BBBBB: to=<x@example.com>, status=sent (Ok)", "OK\nOK\nOK\n");
    EXPECT_EQ(program.Wait().status, 0);
    EXPECT_THAT(MailRows(), ElementsAre("0||x@example.com|"));
}

TEST_F(MailCollect, ConfirmsEachLineOnceItIsStored) {
    Program program({"collect", "--mail", "--confirm"});
    program.Write("BEGIN TRANSACTION\n" + Join(kLog) + "COMMIT TRANSACTION\n");
    program.WaitForOutput([](const std::string& output) {
        return std::count(output.begin(), output.end(), '\n') == 11;
    });
    ExpectAllRows();
    program.Signal(SIGKILL);
    program.Wait();
    // As rsyslog does if the answer got lost.
    Program again({"collect", "--mail", "--confirm"});
    again.Write(Join(kLog, 6));
    EXPECT_THAT(again.Wait(),
                Ended(testing::_, MatchesRegex("OK\n\\.*OK\n\\.*OK\n"),
                      HasSubstr("collected 0 mail, 0 security, skipped 0, unreadable 0\n")));
    ExpectAllRows();
}

TEST_F(MailCollect, ReadsTheJournal) {
    fs::create_directory("/tmp/bin");
    test::WriteTextFile("/tmp/bin/journalctl",
                        "#!/bin/sh\necho \"$@\" >> /tmp/journal.arguments\n"
                        "cat /tmp/journal.entries\n",
                        0755);
    std::string bytes;
    for (const char c : std::string("AAAAA: to=<x@example.com>, status=sent (\xff)")) {
        bytes += (bytes.empty() ? "" : ",") + std::to_string(static_cast<unsigned char>(c));
    }
    test::WriteTextFile(
        "/tmp/journal.entries",
        R"({"__CURSOR":"s=1","__REALTIME_TIMESTAMP":"1795341600000042","_HOSTNAME":"mx1",)"
        R"("SYSLOG_IDENTIFIER":"postfix/smtp","_PID":"7","MESSAGE":[)" +
            bytes + "]}\n" +
            R"({"__CURSOR":"s=2","__REALTIME_TIMESTAMP":"1795341600000042","_HOSTNAME":"mx1",)"
            R"("SYSLOG_IDENTIFIER":"sshd","MESSAGE":"hello"})" +
            "\n");
    const Program::Environment environment = {
        {"PATH", "/tmp/bin:" + std::string(std::getenv("PATH"))}};
    const Lines outputs = {"collected 1 mail, 0 security, skipped 1, unreadable 0\n",
                           "collected 0 mail, 0 security, skipped 1, unreadable 0\n"};
    for (const std::string& output : outputs) {
        const Program::Result result =
            Program::Run({"collect", "--mail", "--journal", "--once"}, {}, environment);
        EXPECT_EQ(result.output, output) << result.error;
    }
    EXPECT_THAT(test::RunOnFile(kMailStore, "SELECT date, host, mail_to FROM mail_log_table"),
                ElementsAre("1795341600|mx1|x@example.com"));
    EXPECT_THAT(test::ReadTextFile("/tmp/journal.arguments"),
                MatchesRegex("[^\n]*--facility=mail --priority=alert..debug\n[^\n]*=s=2\n"));
}

TEST_F(MailCollect, KeepsTheLinesInHandWhenToldToStop) {
    Collect(Join(kLog, 0, 5));
    Program program({"collect", "--mail", "--confirm"});
    program.Write(kLog[5] + "\n");
    program.WaitForOutput([](const std::string& output) { return output == "OK\nOK\n"; });
    {
        const test::StoreLock lock(kMailStore);
        program.Write(kLog[6] + "\n");
        program.WaitForError("cannot store mail events");
        program.Signal(SIGTERM);
        EXPECT_EQ(program.Wait().status, 1);
    }
    const std::string kept = test::ReadTextFile(kSpool + "rejected_mail.log");
    EXPECT_EQ(kept.substr(kept.rfind('\t') + 1), kLog[6] + "\n");
    Collect(kept.substr(kept.rfind('\t') + 1) + kLog[7] + "\n");
    ExpectAllRows();
}

TEST_F(MailCollect, ForgetsMailsThatNobodyHearsOf) {
    Collect(Join(kLog, 0, 5));
    test::RunOnFile(state_file::kPath,
                    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
                    "100000) INSERT INTO mail SELECT 'mx2', i, 1795341601 + i % 9, '', '', '', 0, "
                    "'', 0 FROM n");
    Collect("2026-11-22T10:00:02Z mx1 postfix/smtpd[1]: BBBBB: client=x[203.0.113.5]\n");
    EXPECT_THAT(State("SELECT COUNT(*), MIN(date) FROM mail"), ElementsAre("100000|1795341601"));
    EXPECT_THAT(State("SELECT * FROM recipient"), IsEmpty());
    // A clock that is wrong somewhere does no harm.
    Collect("2037-11-29T10:00:02Z mx1 postfix/smtpd[1]: CCCCC: client=x[203.0.113.5]\n");
    EXPECT_THAT(State("SELECT COUNT(*) FROM mail"), ElementsAre("100000"));
    test::RunOnFile(state_file::kPath, "UPDATE mail SET date = date - 8 * 86400");
    Collect("2026-11-22T10:00:02Z mx1 postfix/smtpd[1]: DDDDD: client=x[203.0.113.5]\n");
    EXPECT_THAT(State("SELECT COUNT(*) FROM mail WHERE date < 1795341602"), ElementsAre("0"));
}

TEST_F(MailCollect, LeavesAStateOfANewerReleaseAlone) {
    Collect("");
    test::RunOnFile(state_file::kPath, "PRAGMA user_version = 2");
    Program program({"collect", "--mail"});
    program.WaitForError("install the newer release again");
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait().status, 1);
    EXPECT_THAT(Program::Run({"status"}).output, HasSubstr("wrong: mail events: "));
}

TEST_F(MailCollect, TakesAStoreOutOfWalMode) {
    Collect("");
    test::RunOnFile(kMailStore, "PRAGMA journal_mode = WAL");
    Collect(Join(kLog));
    ExpectAllRows();
    EXPECT_THAT(test::RunOnFile(kMailStore, "PRAGMA journal_mode"), ElementsAre("delete"));
}

}  // namespace
}  // namespace serverlog::program
