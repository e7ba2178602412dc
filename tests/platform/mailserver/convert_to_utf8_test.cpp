#include <gtest/gtest.h>
#include <mailserver/convert_to_utf8.h>
#include <mailserver/html_escape.h>

#include <string>

#include "support/table.h"

namespace {

TEST(ConvertToUTF8, Addresses) {
    const test::Table<const char*, std::string, std::string> rows = {
        {"empty", "", ""},
        {"case stays", "User@Example.COM", "User@Example.COM"},
        {"punycode domain", "user@xn--mnchen-3ya.de", "user@münchen.de"},
        {"punycode in capitals", "User@mail.XN--Mnchen-3ya.DE", "User@mail.münchen.de"},
        {"domain alone", "xn--mnchen-3ya.de", "münchen.de"},
        {"with a name around", "M <a@xn--mnchen-3ya.de>, b@xn--bcher-kva.example.",
         "M <a@münchen.de>, b@bücher.example."},
        {"user part that looks like punycode", "xn--a@example.com", "xn--a@example.com"},
        {"UTF-8 stays", "jürgen@bücher.example", "jürgen@bücher.example"},
        {"other encoding", "M\xfcller@example.com", "Müller@example.com"},
        {"other encoding and punycode", "M\xfcller@xn--mnchen-3ya.de", "Müller@münchen.de"},
        {"encoded word, B", "=?utf-8?B?TcO8bGxlcg==?= <m@example.com>", "Müller <m@example.com>"},
        {"encoded word, Q", "=?ISO-8859-15?q?10_=a4?= x", "10 € x"},
        {"encoded word, other charset", "=?iso-2022-jp?b?GyRCRnxLXBsoQg?=", "日本"},
        {"encoded words in a row", "=?utf-8*en?Q?a?=\r\n =?utf-8?Q?_b?= c", "a b c"},
        {"what only looks encoded", "=?x?= =?utf-8?Z?a?= =?", "=?x?= =?utf-8?Z?a?= =?"},
        {"at sign last", "user@", "user@"},
    };
    for (const auto& [name, in, expected] : rows) {
        std::string out = "as it was";
        EXPECT_EQ(MERO::POSTCUBE_SERVER::ConvertToUTF8(in, out), 0) << name;
        EXPECT_EQ(out, expected) << name;
    }
}

TEST(ConvertToUTF8, WhatCannotBeDecodedFails) {
    const test::Table<const char*, std::string> rows = {
        {"broken punycode", "user@xn--zzzzzzzz99999.de"},
        {"punycode of no valid domain", "user@xn--a-ecp.ru"},
        {"unknown charset", "=?x-none?Q?a?="},
        {"bytes of another charset", "=?utf-8?Q?=ff?="},
        {"broken base64", "=?utf-8?B?TcO*?="},
        {"base64 cut short", "=?utf-8?B?TcO8b?="},
        {"broken hex digits", "=?utf-8?Q?a=4?="},
        {"line feed hidden in a word", "=?utf-8?Q?a=0Ab?="},
        {"NUL hidden in a word", "=?utf-8?B?AGE=?="},
    };
    for (const auto& [name, in] : rows) {
        std::string out = "as it was";
        EXPECT_EQ(MERO::POSTCUBE_SERVER::ConvertToUTF8(in, out), -1) << name;
        EXPECT_EQ(out, "as it was") << name;
    }
}

TEST(HtmlStrEscape, MarkupCharactersOnly) {
    EXPECT_EQ(HtmlStrEscape("<a href=\"x\">R&D's</a> ü\n"),
              "&lt;a href=&quot;x&quot;&gt;R&amp;D&#39;s&lt;/a&gt; ü\n");
}

}  // namespace
