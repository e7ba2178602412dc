#include <gtest/gtest.h>
#include <mailserver/domain_list.h>
#include <mailserver/smtp_conf.h>
#include <syslog.h>

#include <filesystem>

#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using Names = std::list<std::string>;

constexpr char kPath[] = "/var/packages/PostCube-Server/etc/domains.json";

std::string File(const std::string& name) {
    return R"({"domains":[{"domain_id":1,"name":")" + name + R"("}]})";
}

TEST(DomainList, Names) {
    test::SyslogSocket log;
    const std::string long_label(64, 'a');
    const test::Table<const char*, std::string, int, Names, std::size_t> rows = {
        {"two",
         R"({"domains":[{"domain_id":2,"name":"b.example"},{"domain_id":1,"name":"a.example"}]})",
         0,
         {"b.example", "a.example"},
         0},
        {"none", R"({"domains":[]})", 0, {}, 0},
        {"one form", File("Example.COM"), 0, {"example.com"}, 0},
        {"punycode", File("xn--mnchen-3ya.de"), 0, {"münchen.de"}, 0},
        {"Unicode", File("MÜNCHEN.de"), 0, {"münchen.de"}, 0},
        {"one label", File("localhost"), 0, {"localhost"}, 0},
        {"single quote", File("a'b.example"), 0, {}, 1},
        {"double quote", File("a\\\"b.example"), 0, {}, 1},
        {"full-width quote", File("a＂b.example"), 0, {}, 1},
        {"wildcard", File("a%.example"), 0, {}, 1},
        {"underscore", File("a_b.example"), 0, {}, 1},
        {"blank", File("a b.example"), 0, {}, 1},
        {"NUL", File("a.example\\u0000"), 0, {}, 1},
        {"empty", File(""), 0, {}, 1},
        {"empty label", File("a..example"), 0, {}, 1},
        {"dot at the end", File("a.example."), 0, {}, 1},
        {"hyphen at the end", File("a-.example"), 0, {}, 1},
        {"label too long", File(long_label + ".example"), 0, {}, 1},
        {"broken punycode", File("xn--zzzzzzzz99999.de"), 0, {}, 1},
        {"the others stay",
         R"({"domains":[{"domain_id":"1","name":"a.example"},7,{"domain_id":1},
          {"domain_id":2,"name":"b.example"}]})",
         0,
         {"b.example"},
         3},
        {"no JSON", "{", -1, {"as it was"}, 1},
        {"no array", R"({"domains":{}})", -1, {"as it was"}, 1},
        {"no object", "[]", -1, {"as it was"}, 1},
        {"nested too deep", std::string(5000, '['), -1, {"as it was"}, 1},
    };
    for (const auto& [name, file, result, expected, lines] : rows) {
        test::WriteTextFile(kPath, file);
        Names domains = {"as it was"};
        EXPECT_EQ(loadAllUtf8DomainList(domains), result) << name;
        EXPECT_EQ(domains, expected) << name;
        EXPECT_EQ(log.TakeTexts(LOG_MAIL | LOG_WARNING).size(), lines) << name;
    }
    std::filesystem::remove(kPath);
    Names domains = {"old"};
    EXPECT_EQ(loadAllUtf8DomainList(domains), 0);
    EXPECT_EQ(domains, Names());
    std::filesystem::create_directory(kPath);
    EXPECT_EQ(loadAllUtf8DomainList(domains), -1);
    std::filesystem::remove(kPath);
}

TEST(SmtpConf, NamesByNumber) {
    SmtpConf conf;
    std::string name = "as it was";
    EXPECT_FALSE(conf.GetDomainName(1, name));
    test::WriteTextFile(kPath, R"({"domains":[{"domain_id":1,"name":"xn--mnchen-3ya.de"},
        {"domain_id":1,"name":"second.example"},{"domain_id":-2,"name":"b.example"}]})");
    EXPECT_TRUE(conf.LoadSettings());
    EXPECT_FALSE(conf.GetDomainName(3, name));
    EXPECT_EQ(name, "as it was");
    EXPECT_TRUE(conf.GetDomainName(1, name));
    EXPECT_EQ(name, "münchen.de");
    test::WriteTextFile(kPath, "{");
    EXPECT_FALSE(conf.LoadSettings());
    EXPECT_TRUE(conf.GetDomainName(-2, name));
    EXPECT_EQ(name, "b.example");
    test::WriteTextFile(kPath, R"({"domains":[]})");
    EXPECT_TRUE(conf.LoadSettings());
    EXPECT_FALSE(conf.GetDomainName(1, name));
}

}  // namespace
