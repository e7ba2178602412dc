#include <gtest/gtest.h>
#include <mlibc/unicode.h>

#include <string>
#include <vector>

#include "support/table.h"

namespace {

TEST(UnicodeUpper, TextsAndRoom) {
    const test::Table<std::string, std::string, int, int, std::string> rows = {
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
    for (const auto& [name, in, size, result, expected] : rows) {
        std::vector<char> out(100, '#');
        ASSERT_EQ(MLIBCUnicodeUTF8StrUpper(in.c_str(), out.data(), size), result) << name;
        if (result >= 0) {
            EXPECT_STREQ(out.data(), expected.c_str()) << name;
        }
    }
}

}  // namespace
