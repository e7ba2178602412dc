#pragma once

#include <array>
#include <string_view>

namespace serverlog::program {

/// What lines of which program become rows of the security log, and of what type.
struct SecurityRule {
    std::string_view program;  ///< of Postfix, whatever its service is called: "postfix/<part>"
    std::string_view type;
    std::string_view
        pattern;  ///< of the line's text, and what of it goes where; see MatchesPattern
    std::array<std::string_view, 3> except;  ///< patterns of lines that are another rule's, or none
    std::string_view sample;                 ///< the text of a line
};

namespace pattern {

inline constexpr std::string_view kSmtpdDnsbl =
    "{id}: reject: {*} from {*}[{src}]: {code}Service unavailable; {words}[{*}] blocked using "
    "{envelope}";
inline constexpr std::string_view kSmtpdAccess =
    "{id}: reject: {*} from {*}[{src}]: {code}{<*>}: {words}: Access denied{envelope}";
inline constexpr std::string_view kPostscreenDnsbl =
    "NOQUEUE: reject: {*} from [{src}]:{*}: {code}Service unavailable; client [{*}] blocked using "
    "{envelope}";
inline constexpr std::string_view kDisposition =
    "{id}: reject: header Content-Disposition: {check}";
inline constexpr std::string_view kContentType = "{id}: reject: header Content-Type: {check}";
inline constexpr std::string_view kProtection = "{id}: reject: {*} {check}{code}MCP: {*}";
inline constexpr std::string_view kInfectedSubject =
    "Message {*}from {sender} to {recipient} with subject '{subject}' message-id '{*}' date '{*}' "
    "infected by {*}";

}  // namespace pattern

/// The type tells who decided: a filter's own line has the filter's type, and what Postfix logs of
/// the same mail because of the filter is of the type reject. So each counts once.
inline constexpr SecurityRule kSecurityRules[] = {
    {"postfix/smtpd",
     "dnsbl",
     pattern::kSmtpdDnsbl,
     {},
     "NOQUEUE: reject: RCPT from unknown[203.0.113.5]: 554 5.7.1 Service unavailable; Client host "
     "[203.0.113.5] blocked using zen.example.net; https://zen.example.net/q/203.0.113.5; "
     "from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>"},
    {"postfix/smtpd",
     "blacklist",
     pattern::kSmtpdAccess,
     {},
     "NOQUEUE: reject: RCPT from eve.example.net[203.0.113.5]: 554 5.7.1 <eve@example.net>: Sender "
     "address rejected: Access denied; from=<eve@example.net> to=<ann@example.com> proto=ESMTP "
     "helo=<eve.example.net>"},
    {"postfix/smtpd",
     "reject",
     "{id}: reject: {*} from {*}[{src}]: {code}{envelope}",
     {pattern::kSmtpdDnsbl, pattern::kSmtpdAccess},
     "NOQUEUE: reject: RCPT from eve.example.net[203.0.113.5]: 554 5.7.1 <bob@example.org>: Relay "
     "access denied; from=<eve@example.net> to=<bob@example.org> proto=ESMTP helo=<eve>"},
    {"postfix/smtpd",
     "reject",
     "{id}: milter-reject: {*} from {*}[{src}]: {envelope}",
     {},
     "NOQUEUE: milter-reject: RCPT from unknown[203.0.113.5]: 451 4.7.1 Try again later; "
     "from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>"},
    {"postfix/smtpd",
     "reject",
     "{id}: proxy-reject: {*}: {code}{envelope}",
     {},
     "NOQUEUE: proxy-reject: END-OF-MESSAGE: 554 5.7.0 Reject, id=04711-02; "
     "from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>"},
    {"postfix/smtpd",
     "reject",
     "{id}: discard: {*} from {*}[{src}]: {envelope}",
     {},
     "NOQUEUE: discard: RCPT from unknown[203.0.113.5]: <eve@example.net>: Sender address "
     "triggers DISCARD action; from=<eve@example.net> to=<ann@example.com> proto=SMTP helo=<eve>"},
    {"postfix/postscreen",
     "dnsbl",
     pattern::kPostscreenDnsbl,
     {},
     "NOQUEUE: reject: RCPT from [203.0.113.5]:51234: 550 5.7.1 Service unavailable; client "
     "[203.0.113.5] blocked using zen.example.net; from=<eve@example.net>, to=<ann@example.com>, "
     "proto=ESMTP, helo=<eve>"},
    {"postfix/postscreen",
     "reject",
     "NOQUEUE: reject: {*} from [{src}]:{*}: {envelope}",
     {pattern::kPostscreenDnsbl},
     "NOQUEUE: reject: RCPT from [203.0.113.5]:51235: 450 4.3.2 Service currently unavailable; "
     "from=<eve@example.net>, to=<ann@example.com>, proto=ESMTP, helo=<eve>"},
    {"postfix/postscreen",
     "blacklist",
     "BLACKLISTED [{src}]:",
     {},
     "BLACKLISTED [203.0.113.5]:51236"},
    {"postfix/postscreen",
     "blacklist",
     "DENYLISTED [{src}]:",
     {},
     "DENYLISTED [203.0.113.5]:51237"},
    {"postfix/cleanup",
     "reject",
     "{id}: milter-reject: {*} from {*}[{src}]: {envelope}",
     {},
     "4F9D195432: milter-reject: END-OF-MESSAGE from unknown[203.0.113.5]: 5.7.1 Spam message "
     "rejected; from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>"},
    {"postfix/cleanup",
     "attachment",
     pattern::kDisposition,
     {pattern::kProtection},
     "4F9D195433: reject: header Content-Disposition: attachment; filename=\"a.exe\" from "
     "unknown[203.0.113.5]; from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>: "
     "5.7.1 No programs, please"},
    {"postfix/cleanup",
     "attachment",
     pattern::kContentType,
     {pattern::kProtection},
     "4F9D195434: reject: header Content-Type: application/x-msdownload; name=\"a.exe\" from "
     "unknown[203.0.113.5]; from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>: "
     "5.7.1 No programs, please"},
    {"postfix/cleanup",
     "mcp",
     pattern::kProtection,
     {},
     "4F9D195435: reject: body The secret plan from unknown[203.0.113.5]; from=<eve@example.net> "
     "to=<ann@example.com> proto=ESMTP helo=<eve>: 5.7.1 MCP: words of this house"},
    {"postfix/cleanup",
     "content",
     "{id}: reject: {*} {check}",
     {pattern::kDisposition, pattern::kContentType, pattern::kProtection},
     "4F9D195436: reject: header Subject: Buy now from unknown[203.0.113.5]; "
     "from=<eve@example.net> to=<ann@example.com> proto=ESMTP helo=<eve>: 5.7.1 message content "
     "rejected"},
    {"postfix/cleanup",
     "content",
     "{id}: discard: {*} {check}",
     {},
     "4F9D195437: discard: body Buy now from unknown[203.0.113.5]; from=<eve@example.net> "
     "to=<ann@example.com> proto=ESMTP helo=<eve>"},
    {"postfix/cleanup",
     "content",
     "{id}: hold: {*} {check}",
     {},
     "4F9D195438: hold: header Subject: Buy now from unknown[203.0.113.5]; from=<eve@example.net> "
     "to=<ann@example.com> proto=ESMTP helo=<eve>"},
    {"rspamd",
     "spam",
     "<{*}>; {*}; rspamd_task_write_log: id: <{*}>, qid: <{*}>, ip: {src}, {*}from: {<sender>}, "
     "(default: T (reject): {*}, rcpts: {<recipient>}",
     {},
     "<b7fa01>; proxy; rspamd_task_write_log: id: <1@example.net>, qid: <4F9D195439>, ip: "
     "203.0.113.5, from: <eve@example.net>, (default: T (reject): [18.20/15.00] "
     "[BAYES_SPAM(5.10){100.00%;}]), len: 4321, time: 120.1ms, dns req: 12, digest: <a0b1>, "
     "rcpts: <ann@example.com>, mime_rcpts: <ann@example.com>"},
    {"rspamd",
     "spam",
     "<{*}>; {*}; rspamd_task_write_log: id: <{*}>, qid: <{*}>, ip: {src}, {*}from: {<sender>}, "
     "(default: T (add header): {*}, rcpts: {<recipient>}",
     {},
     "<b7fa02>; proxy; rspamd_task_write_log: id: <2@example.net>, qid: <4F9D195440>, ip: "
     "203.0.113.5, from: <eve@example.net>, (default: T (add header): [8.20/15.00] "
     "[BAYES_SPAM(5.10){100.00%;}]), len: 4321, time: 120.1ms, dns req: 12, digest: <a0b2>, "
     "rcpts: <ann@example.com>, mime_rcpts: <ann@example.com>"},
    {"rspamd",
     "spam",
     "<{*}>; {*}; rspamd_task_write_log: id: <{*}>, qid: <{*}>, ip: {src}, {*}from: {<sender>}, "
     "(default: T (rewrite subject): {*}, rcpts: {<recipient>}",
     {},
     "<b7fa03>; proxy; rspamd_task_write_log: id: <3@example.net>, qid: <4F9D195441>, ip: "
     "203.0.113.5, from: <eve@example.net>, (default: T (rewrite subject): [9.20/15.00] "
     "[BAYES_SPAM(5.10){100.00%;}]), len: 4321, time: 120.1ms, dns req: 12, digest: <a0b3>, "
     "rcpts: <ann@example.com>, mime_rcpts: <ann@example.com>"},
    {"clamav-milter",
     "virus",
     "Message {*}from {sender} to {recipient} infected by {*}",
     {pattern::kInfectedSubject},
     "Message 4F9D195442 from <eve@example.net> to <ann@example.com> infected by Eicar-Signature"},
    {"clamav-milter",
     "virus",
     pattern::kInfectedSubject,
     {},
     "Message from <eve@example.net> to <ann@example.com> with subject 'A bill' message-id "
     "'<4@example.net>' date 'Sun, 22 Nov 2026 10:00:00 +0000' infected by Eicar-Signature"},
    {"clamd", "virus", "{*}: {*} FOUND{end}", {}, "instream(local): Eicar-Signature FOUND"},
    {"opendkim", "dkim", "{id}: bad signature data", {}, "4F9D195443: bad signature data"},
    {"opendkim",
     "dkim",
     "{id}: key retrieval failed ",
     {},
     "4F9D195444: key retrieval failed (s=mail, d=example.net): 'mail._domainkey.example.net' "
     "record not found"},
    {"opendkim",
     "dkim",
     "{id}: s={*} d={domain} {*}SSL ",
     {},
     "4F9D195445: s=mail d=example.net a=rsa-sha256 SSL error:04091068:rsa routines:: bad "
     "signature"},
    {"opendmarc", "dmarc", "{id}: {domain} fail{end}", {}, "4F9D195446: example.net fail"},
    {"opendmarc",
     "spf",
     "{id}: SPF({*}): {sender} fail{end}",
     {},
     "4F9D195447: SPF(mailfrom): eve@example.net fail"},
    {"policyd-spf",
     "spf",
     "{code}Message rejected due to: {*};id={sender};ip={src};r={recipient}",
     {},
     "550 5.7.23 Message rejected due to: SPF fail - not authorized. Please see "
     "http://www.example.org/Why?s=mfrom;id=eve@example.net;ip=203.0.113.5;r=ann@example.com"},
    {"policyd-spf",
     "spf",
     "prepend Received-SPF: Softfail {*}client-ip={src}; {*}envelope-from={sender}; "
     "receiver={recipient}",
     {},
     "prepend Received-SPF: Softfail (mailfrom) identity=mailfrom; client-ip=203.0.113.5; "
     "helo=eve; envelope-from=eve@example.net; receiver=ann@example.com"},
    {"policyd-spf",
     "spf",
     "prepend Received-SPF: Fail {*}client-ip={src}; {*}envelope-from={sender}; "
     "receiver={recipient}",
     {},
     "prepend Received-SPF: Fail (mailfrom) identity=mailfrom; client-ip=203.0.113.5; helo=eve; "
     "envelope-from=eve@example.net; receiver=ann@example.com"},
    {"policyd-spf",
     "spf",
     "prepend Received-SPF: Permerror {*}client-ip={src}; {*}envelope-from={sender}; "
     "receiver={recipient}",
     {},
     "prepend Received-SPF: Permerror (mailfrom) identity=mailfrom; client-ip=203.0.113.5; "
     "helo=eve; envelope-from=eve@example.net; receiver=ann@example.com"},
};

}  // namespace serverlog::program
