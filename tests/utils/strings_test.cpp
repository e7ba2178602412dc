#include "utils/strings.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/table.h"
#include "utils/vector_join.h"

namespace serverlog::utils {
namespace {

using Strings = std::vector<std::string>;

TEST(Split, TheTwoFormsDifferInEmptyPieces) {
    const test::Table<std::string, Strings, Strings> rows = {
        {"", {}, {}},
        {"a", {"a"}, {"a"}},
        {"a,,b,", {"a", "", "b"}, {"a", "b"}},
        {",a", {"", "a"}, {"a"}},
        {",", {""}, {}},
        {"a\nb,c", {"a\nb", "c"}, {"a\nb", "c"}},
    };
    for (const auto& [text, by_character, by_string] : rows) {
        EXPECT_EQ(Split(text, ','), by_character) << text;
        EXPECT_EQ(Split(text, std::string(",")), by_string) << text;
    }
    EXPECT_EQ(Split("a, b, , c,d", std::string(", ")), (Strings{"a", "b", "c,d"}));
}

// One row a call: what came out and what should have.
TEST(Strings, Texts) {
    const std::string with_nul("a\0b", 3);
    const test::Table<const char*, std::string, std::string> rows = {
        {"Trim both ends", Trim(" \t\r\na b\v\f "), "a b"},
        {"Trim nothing but space", Trim(" \n "), ""},
        {"Trim keeps bytes above 127", Trim("\xc2\xa0 "), "\xc2\xa0"},
        {"Quote", Quote("a\"b\\c"), R"("a\"b\\c")"},
        {"Quote leaves single quotes", Quote("it's"), "\"it's\""},
        {"Unquote takes escapes off", Unquote(R"("a\"b")"), "a\"b"},
        {"Unquote ends at a bare quote", Unquote("\"ab\"cd\""), "ab"},
        {"Unquote without quotes", Unquote("ab"), "ab"},
        {"Unquote with one side", Unquote("\"ab"), "\"ab"},
        {"Unquote a lone quote", Unquote("\""), ""},
        {"Unquote keeps blanks", Unquote("\"  a b \""), "  a b "},
        {"Unquote undoes Quote", Unquote(Quote("a \"b\\\" c\n")), "a \"b\\\" c\n"},
        {"Join", Join(Strings{"a", "", "b"}, ", "), "a, , b"},
        {"Join numbers", Join(std::vector<int>{1, -2}, ","), "1,-2"},
        {"Join none", Join(Strings{}, ", "), ""},
        {"Replace all", Replace("aXbXX", "X", "--"), "a--b----"},
        {"Replace looks behind what it put in", Replace("aaa", "a", "aa"), "aaaaaa"},
        {"Replace goes left to right", Replace("aaa", "aa", "b"), "ba"},
        {"Replace keeps NUL", Replace(with_nul, "b", "c"), std::string("a\0c", 3)},
        {"ToLower", ToLower("AbC\xc3\x84"), "abc\xc3\x84"},
        {"ToUpper", ToUpper("aBc\xc3\xa4"), "ABC\xc3\xa4"},
        {"UTF8StrUpper", UTF8StrUpper("aé жß"), "AÉ ЖSS"},
        {"UTF8StrUpper of bad UTF-8", UTF8StrUpper("a\xff"), "a\xff"},
        {"UTF8StrUpper without room", UTF8StrUpper("\xce\x90"), "\xce\x90"},
        {"UTF8StrUpper up to NUL", UTF8StrUpper(with_nul), "A"},
        {"RemoveTail", RemoveTail("a.b.c", "."), "a.b"},
        {"RemoveTail with more behind", RemoveTail("abcabc", "b"), "abca"},
        {"RemoveTail without tail", RemoveTail("abc", "x"), "abc"},
        {"RemoveTail of a version", RemoveTail("Webapi_Domain_Set_v1", "_v"), "Webapi_Domain_Set"},
        {"AddressToUtf8 punycode", AddressToUtf8("a@xn--bcher-kva.example"), "a@bücher.example"},
        {"AddressToUtf8 undecodable", AddressToUtf8("=?no-such?B?YQ==?="), "=?no-such?B?YQ==?="},
    };
    for (const auto& [call, got, expected] : rows) {
        EXPECT_EQ(got, expected) << call;
    }
}

TEST(Strings, StartswithComparesBytes) {
    EXPECT_TRUE(Startswith("abc", ""));
    EXPECT_TRUE(Startswith("abc", "abc"));
    EXPECT_TRUE(Startswith("abc", "ab"));
    EXPECT_FALSE(Startswith("abc", "abcd"));
    EXPECT_FALSE(Startswith("abc", "bc"));
    EXPECT_FALSE(Startswith("", "a"));
    EXPECT_FALSE(Startswith(std::string("a\0b", 3), std::string("a\0c", 3)));
}

TEST(SizeToKb, CutsAndSwitchesToExponents) {
    const test::Table<int, const char*> rows = {
        {0, "0KB"},
        {1, "0.0KB"},
        {1000, "0.9KB"},
        {1023, "0.9KB"},
        {1024, "1KB"},
        {1536, "1.5KB"},
        {-1536, "-1.5KB"},
        {2048, "2KB"},
        {99 * 1024 + 307, "99.2KB"},
        {100 * 1024 + 307, "100.3KB"},  // of six digits, 100.300
        {1000 * 1024 - 1, "999.9KB"},
        {1000 * 1024, "1000KB"},
        {1000 * 1024 + 1018, "1000.9KB"},  // of six digits, 1000.99
        {1000 * 1024 + 1019, "1001KB"},
        {10'000 * 1024 - 1, "10000KB"},
        {123456789, "120563KB"},
        {1024000000, "1e+06KB"},
        {1073741824, "1.0KB"},
        {INT_MAX, "2.0KB"},
        {INT_MIN, "-2.0KB"},
    };
    for (const auto& [bytes, text] : rows) {
        EXPECT_EQ(SizeToKb(bytes), text) << bytes;
    }
}

TEST(VectorJoin, AppendsAndLeavesTheOperandsAlone) {
    const Strings a = {"a", "b"};
    const Strings b = {"c"};
    EXPECT_EQ(a + b + a, (Strings{"a", "b", "c", "a", "b"}));
    EXPECT_EQ(a.size() + b.size(), 3U);
}

}  // namespace
}  // namespace serverlog::utils
