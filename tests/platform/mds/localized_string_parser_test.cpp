#include <gtest/gtest.h>
#include <json/json.h>
#include <mds/localized_string_parser.h>
#include <syslog.h>

#include <filesystem>

#include "support/json_value.h"
#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

TEST(ParseTexts, LinesOfEachKind) {
    test::SyslogSocket log;
    // The last column has the numbers of the lines that are told to be wrong.
    const test::Table<const char*, const char*, const char*, std::string> rows = {
        {"sections and keys", "[a]\nx=\"1\"\ny=\"2\"\n[b]\nx=\"3\"\n",
         R"({"a":{"x":"1","y":"2"},"b":{"x":"3"}})", ""},
        {"escapes", R"([a]
quote="say \"yes\""
path="C:\\x\n")",
         R"({"a":{"quote":"say \"yes\"","path":"C:\\xn"}})", ""},
        {"signs in a text", "[a]\nx=\"k=\\\"v\\\" # [b]\"\n", R"({"a":{"x":"k=\"v\" # [b]"}})", ""},
        {"comments, blanks, DOS line ends",
         "\xEF\xBB\xBF# head\r\n\r\n[a]\r\n  x = \"1\" \r\n #y=\"2\"\r\n", R"({"a":{"x":"1"}})",
         ""},
        {"section goes on, last text counts", "[a]\nx=\"1\"\n[b]\n[a]\nx=\"2\"\ny=\"\"\n",
         R"({"a":{"x":"2","y":""},"b":{}})", ""},
        {"non-ASCII", "[a]\nx=\"Größe\"\n", R"({"a":{"x":"Größe"}})", ""},
        {"bad lines", "x=\"1\"\n[a]\nx\nx=1\nx=\"1\n=\"1\"\nx=\"1\"2\n[]\ny=\"2\"\n",
         R"({"a":{"y":"2"}})", "1 3 4 5 6 7 8 "},
        {"empty", "", "{}", ""},
    };
    for (const auto& [name, text, json, expected] : rows) {
        test::WriteTextFile("/tmp/enu", text);
        EXPECT_EQ(MDS::LocalizedStringParser::ParseTexts("/tmp/enu"), test::JsonOf(json)) << name;
        std::string skipped;
        for (const std::string& line : log.TakeTexts(LOG_MAIL | LOG_WARNING)) {
            EXPECT_EQ(line.rfind("/tmp/enu:", 0), 0U) << line;
            skipped += line.substr(9, line.find(' ') - 8);
        }
        EXPECT_EQ(skipped, expected) << name;
    }
}

TEST(ParseTexts, FilesThatAreFoldersMissingOrUnreadable) {
    test::SyslogSocket log;
    const auto parse = MDS::LocalizedStringParser::ParseTexts;
    std::filesystem::create_directory("/tmp/ger");
    EXPECT_EQ(parse("/tmp/ger"), Json::Value(Json::objectValue));
    test::WriteTextFile("/tmp/ger/strings", "[a]\nx=\"1\"\n");
    EXPECT_EQ(parse("/tmp/ger")["a"]["x"], "1");
    EXPECT_EQ(parse("/tmp/missing"), Json::Value(Json::objectValue));
    EXPECT_EQ(log.Take().size(), 0U);

    std::filesystem::remove("/tmp/ger/strings");
    std::filesystem::create_directory("/tmp/ger/strings");
    EXPECT_EQ(parse("/tmp/ger"), Json::Value(Json::objectValue));
    EXPECT_EQ(log.TakeTexts(LOG_MAIL | LOG_WARNING),
              std::vector<std::string>{"read /tmp/ger/strings: Is a directory"});
}

}  // namespace
