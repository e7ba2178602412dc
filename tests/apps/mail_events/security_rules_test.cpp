#include "mail_events/security_rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "apps/mail_events/event_reader.h"
#include "support/table.h"

namespace serverlog::program {
namespace {

using Lines = std::vector<std::string>;

// What the security log's list can be filtered by.
const std::set<std::string_view> kTypes = {"reject", "spam",       "virus",     "content",
                                           "dnsbl",  "attachment", "blacklist", "spf",
                                           "dkim",   "dmarc",      "mcp"};

std::string LineOf(const SecurityRule& rule) {
    return "Nov 22 10:00:00 mx1 " + std::string(rule.program) + "[1]: " + std::string(rule.sample);
}

TEST(SecurityRules, EachTakesItsSampleAndNoOther) {
    std::set<std::string_view> types;
    for (const SecurityRule& rule : kSecurityRules) {
        SCOPED_TRACE(std::string(rule.program) + ": " + std::string(rule.pattern));
        EXPECT_NE(rule.sample, "");
        EXPECT_EQ(kTypes.count(rule.type), 1U) << rule.type;
        types.insert(rule.type);
        PatternFields fields;
        const auto count = std::count_if(
            std::begin(kSecurityRules), std::end(kSecurityRules), [&](const SecurityRule& other) {
                return MatchesRule(other, rule.program, rule.sample, fields);
            });
        EXPECT_EQ(count, 1);
        EXPECT_TRUE(MatchesRule(rule, rule.program, rule.sample, fields));
    }
    EXPECT_EQ(types, kTypes);
}

TEST(SecurityRules, FillTheColumns) {
    for (const SecurityRule& rule : kSecurityRules) {
        SCOPED_TRACE(rule.sample);
        const Lines rows = test::EventReader().Security(LineOf(rule));
        ASSERT_EQ(rows.size(), 1U);
        // Every sample is about the same mail; a line tells of it what it tells.
        const auto holds = [&rule](std::string_view text) {
            return rule.sample.find(text) != std::string_view::npos;
        };
        const bool is_verdict = rule.type == "dkim" || rule.type == "dmarc";
        EXPECT_EQ(rows[0], std::string(rule.type) + (holds("203.0.113.5") ? "|203.0.113.5" : "|") +
                               (holds("eve@") && !is_verdict ? "|eve@example.net" : "|") +
                               (holds("ann@")                   ? "|ann@example.com"
                                : holds("to=<bob@example.org>") ? "|bob@example.org"
                                                                : "|") +
                               (holds("Subject: Buy now") ? "|Buy now"
                                : holds("'A bill'")       ? "|A bill"
                                                          : "|"));
    }
}

TEST(SecurityRules, TakeLinesAsTheyAre) {
    const std::string from = "; from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>";
    const std::string row = "|203.0.113.5|eve@example.net|ann@example.com|";
    const test::Table<const char*, std::string, Lines> cases = {
        {"a later recipient, with a queue id, at another service",
         "postfix/submission/smtpd[1]: AAAAA: reject: RCPT from x[203.0.113.5]: 550 5.1.1 "
         "<ann@example.com>: Recipient address rejected: User unknown" +
             from,
         {"reject" + row}},
        {"an address of version 6",
         "postfix/smtpd[1]: NOQUEUE: reject: RCPT from x[2001:db8::5]: 550 5.1.1 <a>: no" + from,
         {"reject|2001:db8::5|eve@example.net|ann@example.com|"}},
        {"at the connection, where nobody is named",
         "postfix/smtpd[1]: NOQUEUE: reject: CONNECT from x[203.0.113.5]: 554 5.7.1 <x>: no; "
         "proto=SMTP",
         {"reject|203.0.113.5|||"}},
        {"the empty sender",
         "postfix/smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: 554 no; from=<> "
         "to=<ann@example.com> proto=ESMTP helo=<x>",
         {"reject|203.0.113.5||ann@example.com|"}},
        {"a recipient that looks like a block list",
         "postfix/smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: 550 5.1.1 <\"Service "
         "unavailable; Client host [1] blocked using x\"@example.com>: no" +
             from,
         {"reject" + row}},
        {"a sender that looks like a ban",
         "postfix/smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: 550 5.1.1 <b@c>: Recipient "
         "address rejected: no; from=<\": a: Access denied\"@example.net> to=<ann@example.com>",
         {"reject|203.0.113.5|\": a: Access denied\"@example.net|ann@example.com|"}},
        {"a program of the same name",
         "evil/smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: "
         "550 no" +
             from,
         {}},
        {"mail that the filter lets pass",
         "rspamd[1]: <b7>; proxy; rspamd_task_write_log: id: <1@x>, qid: <AAAAA>, ip: 203.0.113.5, "
         "from: <eve@example.net>, (default: F (no action): [0.1/15.00] []), len: 1, rcpts: <a@b>",
         {}},
        {"mail of somebody who has logged in",
         "rspamd[1]: <b7>; proxy; rspamd_task_write_log: id: <1@x>, qid: <AAAAA>, ip: 203.0.113.5, "
         "user: eve, from: <eve@example.net>, (default: T (reject): [20/15.00] []), len: 1, rcpts: "
         "<ann@example.com>",
         {"spam" + row}},
        {"a domain that passes", "opendmarc[1]: AAAAA: example.net pass", {}},
        {"a recipient that is not told",
         "policyd-spf[1]: prepend Received-SPF: Softfail (mailfrom) identity=mailfrom; "
         "client-ip=203.0.113.5; helo=x; envelope-from=eve@example.net; receiver=<UNKNOWN>",
         {"spf|203.0.113.5|eve@example.net||"}},
        {"HTML and terminal escapes",
         "postfix/smtpd[1]: NOQUEUE: reject: RCPT from x[203.0.113.5]: 550 no; "
         "from=<<script>@x#033[2J> to=<'--@example.com> proto=ESMTP helo=<eve>",
         {"reject|203.0.113.5|<script||"}},
    };
    for (const auto& [name, line, rows] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(test::EventReader().Security("Nov 22 10:00:00 mx1 " + line), rows);
    }
}

// A filter's line tells little more than the queue id.
TEST(SecurityRules, AddWhatIsKnownOfTheMail) {
    test::EventReader reader;
    reader.Mail("Nov 22 10:00:00 mx1 postfix/smtpd[1]: AAAAA: client=x[203.0.113.5]");
    reader.Mail(
        "Nov 22 10:00:00 mx1 postfix/cleanup[1]: AAAAA: warning: header Subject: Hi from "
        "x[203.0.113.5]; from=<eve@example.net> to=<a@b> proto=ESMTP helo=<x>");
    EXPECT_EQ(reader.Security("Nov 22 10:00:00 mx1 opendmarc[1]: AAAAA: example.net fail"),
              Lines{"dmarc|203.0.113.5|eve@example.net||Hi"});
    EXPECT_EQ(reader.Security("Nov 22 10:00:00 mx2 opendmarc[1]: AAAAA: example.net fail"),
              Lines{"dmarc||||"});
}

}  // namespace
}  // namespace serverlog::program
