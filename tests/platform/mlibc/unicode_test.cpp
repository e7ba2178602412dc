#include <gtest/gtest.h>
#include <mlibc/unicode.h>

#include <string>
#include <vector>

namespace {

TEST(UnicodeUpper, TextsAndRoom) {
    struct Row {
        std::string name;
        std::string in;
        int size;
        int result;
        std::string out;
    };
    const std::vector<Row> rows = {
        {"ASCII", "abc 1", 100, 5, "ABC 1"},
        {"two bytes a letter", "grüße", 100, 7, "GRÜSSE"},
        {"Greek and Cyrillic", "ωжя", 100, 6, "ΩЖЯ"},
        {"not the Turkish rule", "i", 100, 1, "I"},
        {"just fits with its NUL", "ab", 3, 2, "AB"},
        {"no room for the NUL", "ab", 2, -1, ""},
        {"grows beyond twice its size", "ΐ", 5, -1, ""},
        {"empty", "", 1, 0, ""},
        {"no room at all", "", 0, -1, ""},
        {"broken bytes", "a\xff", 100, -1, ""},
        {"cut short", "a\xc3", 100, -1, ""},
    };
    for (const Row& row : rows) {
        std::vector<char> out(100, '#');
        ASSERT_EQ(MLIBCUnicodeUTF8StrUpper(row.in.c_str(), out.data(), row.size), row.result)
            << row.name;
        if (row.result >= 0) {
            EXPECT_STREQ(out.data(), row.out.c_str()) << row.name;
        }
    }
}

}  // namespace
