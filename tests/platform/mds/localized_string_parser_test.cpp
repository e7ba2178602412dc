#include <gtest/gtest.h>
#include <json/json.h>
#include <mds/localized_string_parser.h>
#include <syslog.h>

#include <filesystem>

#include "support/syslog_socket.h"
#include "support/text_file.h"

namespace {

using Lines = std::vector<std::string>;

Json::Value Parsed(const std::string& text) {
    test::WriteTextFile("/tmp/enu", text);
    return MDS::LocalizedStringParser::ParseTexts("/tmp/enu");
}

TEST(ParseTexts, LinesOfEachKind) {
    test::SyslogSocket log;
    const struct {
        const char* name;
        const char* text;
        const char* json;
        Lines skipped;
    } rows[] = {
        {"sections and keys",
         "[a]\nx=\"1\"\ny=\"2\"\n[b]\nx=\"3\"\n",
         R"({"a":{"x":"1","y":"2"},"b":{"x":"3"}})",
         {}},
        {"escapes",
         R"([a]
quote="say \"yes\""
path="C:\\x\n")",
         R"({"a":{"quote":"say \"yes\"","path":"C:\\xn"}})",
         {}},
        {"signs inside a text",
         "[a]\nx=\"k=\\\"v\\\" # [b]\"\n",
         R"({"a":{"x":"k=\"v\" # [b]"}})",
         {}},
        {"comments, blanks, DOS line ends",
         "\xEF\xBB\xBF# head\r\n\r\n[a]\r\n  x = \"1\" \r\n #y=\"2\"\r\n",
         R"({"a":{"x":"1"}})",
         {}},
        {"section goes on, last text counts",
         "[a]\nx=\"1\"\n[b]\n[a]\nx=\"2\"\ny=\"\"\n",
         R"({"a":{"x":"2","y":""},"b":{}})",
         {}},
        {"non-ASCII", "[a]\nx=\"Größe\"\n", R"({"a":{"x":"Größe"}})", {}},
        {"bad lines",
         "x=\"1\"\n[a]\nx\nx=1\nx=\"1\n=\"1\"\nx=\"1\"2\n[]\ny=\"2\"\n",
         R"({"a":{"y":"2"}})",
         {"/tmp/enu:1", "/tmp/enu:3", "/tmp/enu:4", "/tmp/enu:5", "/tmp/enu:6", "/tmp/enu:7",
          "/tmp/enu:8"}},
        {"empty", "", "{}", {}},
    };
    for (const auto& row : rows) {
        Json::Value expected;
        std::istringstream(row.json) >> expected;
        EXPECT_EQ(Parsed(row.text), expected) << row.name;
        Lines skipped = log.TakeTexts(LOG_MAIL | LOG_WARNING);
        for (std::string& line : skipped) {
            line.resize(line.find(' '));
        }
        EXPECT_EQ(skipped, row.skipped) << row.name;
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
              Lines{"read /tmp/ger/strings: Is a directory"});
}

}  // namespace
