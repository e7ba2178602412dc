#include "mail_events/mail_tracker.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "apps/mail_events/event_reader.h"

namespace {

using Lines = std::vector<std::string>;

const std::string kClient = "smtpd[1]: AAAAA: client=mx.example.org[198.51.100.7]";
const std::string kId = "cleanup[2]: AAAAA: message-id=<1@example.org>";
const std::string kActive =
    "qmgr[3]: AAAAA: from=<bob@example.org>, size=1234, nrcpt=1 (queue active)";
const std::string kRemoved = "qmgr[3]: AAAAA: removed";
const std::string kTail = "|bob@example.org|ann@example.com||1234|<1@example.org>|AAAAA|mx1|";

std::string DeliveryOf(const std::string& queue_id, const std::string& agent,
                       const std::string& status, const std::string& to = "<ann@example.com>") {
    return agent + "[4]: " + queue_id + ": to=" + to +
           ", relay=mx.example.com[192.0.2.1]:25, conn_use=2, delay=1, delays=0/0/0/1, "
           "dsn=2.0.0, status=" +
           status;
}

std::string Delivery(const std::string& agent, const std::string& status,
                     const std::string& to = "<ann@example.com>") {
    return DeliveryOf("AAAAA", agent, status, to);
}

std::string Subject(const std::string& text) {
    return "cleanup[2]: AAAAA: warning: header Subject: " + text +
           " from mx.example.org[198.51.100.7]; from=<bob@example.org> to=<ann@example.com> "
           "proto=ESMTP helo=<mx.example.org>";
}

struct Case {
    const char* name;
    Lines lines;  // of the programs of Postfix; the head is added
    Lines rows;
};

void Check(const std::vector<Case>& cases) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        test::EventReader reader;
        Lines rows;
        for (const std::string& line : row.lines) {
            for (std::string& found : reader.Mail("Nov 22 10:00:00 mx1 postfix/" + line)) {
                rows.push_back(std::move(found));
            }
        }
        EXPECT_EQ(rows, row.rows);
    }
}

TEST(MailTracker, GivesARowForEachFate) {
    const Lines begin = {kClient, kId, kActive};
    const auto with = [&begin](Lines more) {
        more.insert(more.begin(), begin.begin(), begin.end());
        return more;
    };
    std::vector<Case> cases = {
        {"outwards", with({Delivery("smtp", "sent (250 Ok)"), kRemoved}), {"sent" + kTail}},
        {"bounced", with({Delivery("smtp", "bounced (550 no)")}), {"bounced" + kTail}},
        {"by the error service", with({Delivery("error", "bounced (no)")}), {"bounced" + kTail}},
        {"deferred only", with({Delivery("smtp", "deferred (timeout)")}), {}},
        {"deferred, then outwards",
         with({Delivery("smtp", "deferred (timeout)"), kActive, Delivery("smtp", "sent (250 Ok)")}),
         {"resent" + kTail}},
        {"deferred, then here",
         with({Delivery("error", "deferred (x)"), Delivery("lmtp", "sent (x)")}),
         {"resent" + kTail}},
        {"deferred, then bounced",
         with({Delivery("smtp", "deferred (timeout)"), Delivery("smtp", "bounced (550 no)")}),
         {"bounced" + kTail}},
        {"another recipient was deferred",
         with({Delivery("smtp", "deferred (x)", "<x@example.com>"),
               Delivery("smtp", "sent (250 Ok)")}),
         {"sent" + kTail}},
        {"expired, two recipients",
         with({Delivery("smtp", "deferred (x)"),
               Delivery("smtp", "deferred (x)", "<x@example.com>"),
               "qmgr[3]: AAAAA: from=<bob@example.org>, status=expired, returned to sender",
               "bounce[9]: AAAAA: sender non-delivery notification: BBBBB", kRemoved}),
         {"bounced" + kTail,
          "bounced|bob@example.org|x@example.com||1234|<1@example.org>|AAAAA|mx1|"}},
        {"made to expire",
         with({Delivery("smtp", "deferred (x)"),
               "qmgr[3]: AAAAA: from=<bob@example.org>, status=force-expired, returned to sender"}),
         {"bounced" + kTail}},
        {"two recipients of one alias",
         with({Delivery("lmtp", "sent (x)", "<a@example.com>, orig_to=<all@example.com>"),
               Delivery("lmtp", "sent (x)", "<b@example.com>, orig_to=<all@example.com>")}),
         {"received|bob@example.org|a@example.com|all@example.com|1234|<1@example.org>|AAAAA|mx1|",
          "received|bob@example.org|b@example.com|all@example.com|1234|<1@example.org>|AAAAA|"
          "mx1|"}},
        {"a question whether it could be delivered",
         with({Delivery("smtp", "deliverable (250 Ok)")}),
         {}},
        {"the service of another instance",
         with({Delivery("../postfix-out/slow/smtp", "sent (250 Ok)")}),
         {"sent" + kTail}},
    };
    for (const char* agent : {"lmtp", "local", "virtual", "pipe"}) {
        cases.push_back({agent, with({Delivery(agent, "sent (delivered)")}), {"received" + kTail}});
    }
    Check(cases);
}

TEST(MailTracker, FollowsAMailOverSeveralQueueIds) {
    const std::string local_b = "smtpd[5]: BBBBB: client=localhost[127.0.0.1]";
    const std::string id_b = "cleanup[6]: BBBBB: message-id=<1@example.org>";
    const std::string active_b =
        "qmgr[3]: BBBBB: from=<bob@example.org>, size=1300, nrcpt=1 (queue active)";
    const std::string handed = Delivery(
        "smtp", "sent (250 2.0.0 from MTA(smtp:[127.0.0.1]:10025): 250 2.0.0 Ok: queued as BBBBB)",
        "<ann@example.com>, orig_to=<info@example.com>");
    const std::string here = DeliveryOf("BBBBB", "lmtp", "sent (Saved)");
    const auto row_b = [](const std::string& status, const std::string& orig_to,
                          const std::string& subject) {
        return status + "|bob@example.org|ann@example.com|" + orig_to +
               "|1300|<1@example.org>|BBBBB|mx1|" + subject;
    };
    Check({
        {"content filter",
         {kClient, kId, Subject("Hi"), kActive, local_b, id_b, active_b, handed, kRemoved, here},
         {row_b("received", "info@example.com", "Hi")}},
        {"delivered before the filter answers",
         {kClient, kId, Subject("Hi"), kActive, local_b, id_b, active_b, here,
          "qmgr[3]: BBBBB: removed", handed, kRemoved},
         {row_b("received", "", "Hi")}},
        {"the filter was down at first",
         {kClient, kId, kActive,
          Delivery("smtp", "deferred (refused)", "<ann@example.com>, orig_to=<info@example.com>"),
          local_b, id_b, active_b, handed, here},
         {row_b("resent", "info@example.com", "")}},
        {"the filter runs on another host",
         {kClient, kId, kActive, "smtpd[5]: BBBBB: client=filter[192.0.2.9]", id_b, active_b,
          handed, here},
         {row_b("received", "info@example.com", "")}},
        {"the filter tells the queue id",
         {kClient, kActive,
          "smtpd[5]: BBBBB: client=localhost[127.0.0.1], orig_queue_id=AAAAA, "
          "orig_client=mx.example.org[198.51.100.7]",
          active_b, handed, here},
         {"received|bob@example.org|ann@example.com|info@example.com|1300||BBBBB|mx1|"}},
        {"forwarded by an alias",
         {kClient, kId, Subject("Hi"), kActive, id_b, active_b,
          Delivery("local", "sent (forwarded as BBBBB)"), kRemoved,
          DeliveryOf("BBBBB", "smtp", "sent (250 Ok)", "<ann@home.example.net>")},
         {"sent|bob@example.org|ann@home.example.net||1300|<1@example.org>|BBBBB|mx1|Hi"}},
        {"forwarded once it was deferred, then expired elsewhere",
         {kClient, kId, kActive, Delivery("local", "deferred (x)"), id_b, active_b,
          Delivery("local", "sent (forwarded as BBBBB)"), kRemoved,
          DeliveryOf("BBBBB", "smtp", "deferred (x)", "<ann@home.example.net>"),
          "qmgr[3]: BBBBB: from=<bob@example.org>, status=expired, returned to sender"},
         {"bounced|bob@example.org|ann@home.example.net||1300|<1@example.org>|BBBBB|mx1|"}},
        {"another host answers with a queue id of its own",
         {kClient, kId, kActive, Delivery("smtp", "sent (250 Ok: queued as CCCCC)")},
         {"sent" + kTail}},
        {"a queue id of another mail in the answer",
         {"smtpd[5]: CCCCC: client=mx.example.org[198.51.100.7]",
          "cleanup[6]: CCCCC: message-id=<2@example.org>", kClient, kId, kActive,
          Delivery("smtp", "sent (250 Ok: queued as CCCCC)")},
         {"sent" + kTail}},
        {"the same message id from outside is another copy",
         {kClient, kId, Subject("Hi"), kActive, "smtpd[5]: BBBBB: client=x[203.0.113.5]", id_b,
          active_b, here, Delivery("lmtp", "sent (Saved)")},
         {row_b("received", "", ""), "received" + kTail + "Hi"}},
        {"put into the queue again",
         {kClient, kId, kActive, Delivery("smtp", "deferred (x)"),
          "pickup[7]: BBBBB: uid=89 from=<bob@example.org> orig_id=AAAAA", id_b, kRemoved, active_b,
          DeliveryOf("BBBBB", "smtp", "sent (250 Ok)")},
         {row_b("resent", "", "")}},
    });
}

TEST(MailTracker, TakesLogsThatBeginAndEndAnywhere) {
    Check({
        {"the delivery alone",
         {Delivery("smtp", "sent (250 Ok)")},
         {"sent||ann@example.com||0||AAAAA|mx1|"}},
        {"from the queue manager on",
         {kActive, Delivery("lmtp", "sent (x)")},
         {"received|bob@example.org|ann@example.com||1234||AAAAA|mx1|"}},
        {"expired, nobody knows for whom",
         {"qmgr[3]: AAAAA: from=<bob@example.org>, status=expired, returned to sender"},
         {"bounced|bob@example.org|||0||AAAAA|mx1|"}},
        {"never an end, and the queue id is used again",
         {kClient, kId, Subject("Old"), kActive, Delivery("smtp", "deferred (x)"), kClient, kActive,
          Delivery("smtp", "sent (250 Ok)")},
         {"sent|bob@example.org|ann@example.com||1234||AAAAA|mx1|"}},
        {"two mails in turns",
         {kClient, "smtpd[5]: CCCCC: client=x[203.0.113.5]", kId,
          "cleanup[6]: CCCCC: message-id=<2@example.org>", kActive,
          "qmgr[3]: CCCCC: from=<eve@example.net>, size=9, nrcpt=1 (queue active)",
          DeliveryOf("CCCCC", "lmtp", "sent (x)"), "qmgr[3]: CCCCC: removed",
          Delivery("smtp", "sent (250 Ok)")},
         {"received|eve@example.net|ann@example.com||9|<2@example.org>|CCCCC|mx1|",
          "sent" + kTail}},
        {"size that no number holds",
         {"qmgr[3]: AAAAA: from=<>, size=99999999999999, nrcpt=1", Delivery("lmtp", "sent")},
         {"received||ann@example.com||0||AAAAA|mx1|"}},
    });
}

TEST(MailTracker, KeepsWhatASenderWroteAsData) {
    const auto subject = [](const char* name, const std::string& logged, const std::string& kept) {
        return Case{name,
                    {kClient, kId, Subject(logged), kActive, Delivery("lmtp", "sent (x)")},
                    {"received" + kTail + kept}};
    };
    Check({
        subject("encoded words", "=?utf-8?q?Gr=C3=BC=C3=9Fe?= an =?utf-8?b?RGljaA==?=",
                "Gr\xc3\xbc\xc3\x9f"
                "e an Dich"),
        subject("a character cut in two words, Q", "=?UTF-8?Q?=C3?=? =?utf-8?q?=BC?=", "\xc3\xbc"),
        subject("a character cut in two words, B",
                "=?utf-8?B?YWLD?= =?utf-8?B?vA==?=", "ab\xc3\xbc"),
        subject("words that each are whole",
                "=?utf-8?B?YQ==?= =?utf-8?B?Yg==?= =?utf-8?q?c?=", "abc"),
        subject("half a word between words", "=?= =?q?a?= =?", "=?= =?q?a?= =?"),
        subject("folded, line breaks escaped by rsyslog", "one#012 two", "one two"),
        subject("bytes that are no UTF-8 are read as Latin", "caf\xe9 au lait et th\xe9",
                "caf\xc3\xa9 au lait et th\xc3\xa9"),
        subject("SQL, HTML, a formula", "=1+1'; DROP TABLE mail_log_table;--<script>\"&",
                "=1+1'; DROP TABLE mail_log_table;--<script>\"&"),
        subject("terminal escapes", "#033[31mred#007", "\x1b[31mred\x07"),
        subject("another line of a log", "x#012Nov 22 10:00:00 mx1 postfix/qmgr[1]: AAAAA: removed",
                "x\nNov 22 10:00:00 mx1 postfix/qmgr[1]: AAAAA: removed"),
        subject("a line of the admin log",
                R"({"id":"MEROPostCube-Server","type":"admin_log","TAB_TYPE":1})",
                R"({"id":"MEROPostCube-Server","type":"admin_log","TAB_TYPE":1})"),
        subject("the rest of its own line",
                "x from eve[203.0.113.5]; from=<a@example.net> to=<b@example.net> proto=ESMTP "
                "helo=<x>",
                "x from eve[203.0.113.5]; from=<a@example.net> to=<b@example.net> proto=ESMTP "
                "helo=<x>"),
        subject("an encoded word that is none",
                "=?utf-8?x?abc?= =?nonsense?b?!!!?=", "=?utf-8?x?abc?= =?nonsense?b?!!!?="),
        {"an address with everything in quotes",
         {kClient, "qmgr[3]: AAAAA: from=<\"a>, size=9, nrcpt=1\"@example.org>, size=1, nrcpt=1",
          Delivery("lmtp", "sent (x)", "<\"b>, status=bounced (x\"@example.com>")},
         {"received|\"a>, size=9, nrcpt=1\"@example.org|\"b>, status=bounced "
          "(x\"@example.com||1||AAAAA|mx1|"}},
        {"a domain in its encoded form",
         {Delivery("lmtp", "sent (x)", "<ann@xn--bcher-kva.example>")},
         {"received||ann@b\xc3\xbc"
          "cher.example||0||AAAAA|mx1|"}},
        {"a client that names itself like a queue id",
         {"smtpd[1]: warning: hostname AAAAA: removed[203.0.113.5] is not there", kClient, kActive,
          "smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: 554 <AAAAA: removed>: no; "
          "from=<x> to=<y>",
          Delivery("lmtp", "sent (x)")},
         {"received|bob@example.org|ann@example.com||1234||AAAAA|mx1|"}},
    });
}

TEST(MailTracker, TellsHostsApart) {
    test::EventReader reader;
    reader.Mail("Nov 22 10:00:00 mx1 postfix/" + kActive);
    EXPECT_EQ(reader.Mail("Nov 22 10:00:00 mx2 postfix/" + Delivery("lmtp", "sent (x)")),
              Lines{"received||ann@example.com||0||AAAAA|mx2|"});
    EXPECT_EQ(reader.Mail("<22>Nov 22 10:00:00 postfix/" + Delivery("smtp", "sent (x)")),
              Lines{"sent||ann@example.com||0||AAAAA|here|"});
}

}  // namespace
