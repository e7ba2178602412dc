#include "collect/admin_log_line.h"

#include <gtest/gtest.h>

#include "apps/admin_line.h"
#include "support/table.h"

namespace serverlog::program {
namespace {

using test::AdminLine;

constexpr char kPrefix[] = "Nov 22 10:00:00 nas mailserver-log[12]: ";

std::string Escaped(std::string line) {
    line.replace(line.rfind('\n'), 1, "#012");
    return line;
}

TEST(AdminLogLine, GivesEveryColumn) {
    const record::AdminLog record = ReadAdminLogLine(
        kPrefix + AdminLine("Set [\\\"a\\\\b\\\"] to [x\ny\x01]", R"({\"domain\":\"\\u00e4\"})"));
    EXPECT_EQ(record.tab_type, 20);
    EXPECT_EQ(record.statement, "Set [\"a\\b\"] to [x\ny\x01]");
    EXPECT_EQ(record.user, "admin");
    EXPECT_EQ(record.uid, 1024U);
    EXPECT_EQ(record.date, 1790000000U);
    EXPECT_EQ(record.ip, "192.0.2.7");
    EXPECT_EQ(record.server, "(192.0.2.1)");
    EXPECT_EQ(record.webapi_param["domain"].asString(), "\xc3\xa4");
}

TEST(AdminLogLine, TellsEscapesOfTheSystemLogFromTypedText) {
    const test::Table<const char*, std::string, std::string, std::string> rows = {
        {"raw line: nothing was escaped", AdminLine("a#012b", R"({\"p\":\"#012\"})"), "a#012b",
         "#012"},
        {"control characters of the statement", Escaped(AdminLine("a#012#011#177b")),
         "a\n\t\x7f"
         "b",
         ""},
        {"no control character", Escaped(AdminLine("#040#101#400#12#01x#")), "#040#101#400#12#01x#",
         ""},
        {"within parameters only what the writer cannot have written",
         Escaped(AdminLine("s", R"({\"p\":\"#012\"})")), "s", "#012"},
        {"parameters that are JSON only when decoded",
         Escaped(AdminLine("s", R"({#012\"p\":\"v\"#012})")), "s", "v"},
    };
    for (const auto& [name, line, statement, parameter] : rows) {
        SCOPED_TRACE(name);
        const record::AdminLog record = ReadAdminLogLine(line);
        EXPECT_EQ(record.statement, statement);
        EXPECT_EQ(record.webapi_param["p"].asString(), parameter);
    }
}

std::string Replaced(const std::string& from, const std::string& to) {
    std::string line = AdminLine("s");
    return line.replace(line.find(from), from.size(), to);
}

TEST(AdminLogLine, SaysWhyItCannotRead) {
    const test::Table<std::string, std::string> rows = {
        {AdminLine("s").substr(0, 100), "the record is cut short"},
        {AdminLine("s").substr(0, 100) + AdminLine("t"), "the record is cut short"},
        {"from=<" + AdminLine("s"),
         "what stands before the record is no prefix of the system log, or one of another "
         "priority"},
        {Replaced(R"("UID":1024)", R"("UID":)"), "the record is no JSON that can be read"},
        {Replaced(R"("IP")", R"("USER")"), "the record is no JSON that can be read"},
        {Replaced(R"("UID":1024)", R"("UID":/**/1024)"), "the record is no JSON that can be read"},
        {Replaced("\n\"}", "\n\",}"), "the record is no JSON that can be read"},
        {Replaced(R"("TAB_TYPE":20,)", ""), "TAB_TYPE is missing"},
        {Replaced(R"(20)", R"("20")"), "TAB_TYPE is no number of 32 bits"},
        {Replaced(R"(20)", R"(2147483648)"), "TAB_TYPE is no number of 32 bits"},
        {Replaced(R"("s")", "7"), "STATEMENT is no text"},
        {Replaced(R"(1024)", "-1"), "UID is no unsigned number"},
        {Replaced(R"(1024)", "1024.0"), "UID is no unsigned number"},
        {Replaced(R"(1790000000)", "-1"), "EXEC_TIME is no unsigned number"},
        {Replaced(R"("192.0.2.7")", "null"), "IP is no text"},
        {AdminLine("s", "{"), "WEBAPI_PARAM is no JSON that can be read"},
        {AdminLine("s", "{} {}"), "WEBAPI_PARAM is no JSON that can be read"},
        {AdminLine("s", "[1,]"), "WEBAPI_PARAM is no JSON that can be read"},
        {AdminLine("s", "{}/**/"), "WEBAPI_PARAM is no JSON that can be read"},
        {AdminLine("s", std::string(5000, '[')), "WEBAPI_PARAM is no JSON that can be read"},
        {Replaced(",\"UID\"", ",\"x\":" + std::string(5000, '[') + ",\"UID\""),
         "the record is no JSON that can be read"},
    };
    for (const auto& [line, reason] : rows) {
        SCOPED_TRACE(line.substr(0, 300));
        try {
            ReadAdminLogLine(line);
            ADD_FAILURE() << "was read";
        } catch (const LineError& error) {
            EXPECT_EQ(error.what(), reason);
        }
    }
}

TEST(AdminLogLine, ToleratesMoreThanItNeeds) {
    EXPECT_EQ(ReadAdminLogLine(Replaced("\n\"}", "\n\",\"new\":[{}]}")).statement, "s");
    EXPECT_EQ(ReadAdminLogLine(AdminLine("s") + "\r rubbish").statement, "s");
    EXPECT_EQ(ReadAdminLogLine(AdminLine(std::string("a\0b\xff", 4))).statement,
              std::string("a\0b\xff", 4));
    EXPECT_EQ(ReadAdminLogLine(Replaced("1024", "18446744073709551615")).uid, UINT64_MAX);
}

TEST(AdminLogLine, KnowsThePrefixesOfSystemLogs) {
    const test::Table<const char*, bool> rows = {
        {"", true},
        {" ", true},
        {"<16>", true},
        {"<16>Nov 22 10:00:00 mailserver-log: ", true},
        {"<22>Nov 22 10:00:00 mailserver-log: ", false},
        {"Nov 22 10:00:00\tnas\tcgi:\t", true},
        {"2026-11-22T10:00:00.123456+01:00 nas cgi[7]:", true},
        {"Nov 22 10:00:00 nas a program:  ", true},
        {"<16>1 2026-11-22T10:00:00Z nas cgi 7 - - ", true},
        {"<16>1 2026-11-22T10:00:00Z nas cgi 7 - [a b=\"c\"][d] ", true},
        {"<16>1 2026-11-22T10:00:00Z nas cgi 7 - - said ", false},
        {"Nov 22 10:00:00 nas smtpd[7]: NOQUEUE: reject: from=<", false},
        {"Nov 22 10:00:00 nas smtpd[7]: NOQUEUE: ", false},
        {"rubbish ", false},
    };
    for (const auto& [text, is_prefix] : rows) {
        EXPECT_EQ(IsSyslogPrefix(text), is_prefix) << text;
    }
}

}  // namespace
}  // namespace serverlog::program
