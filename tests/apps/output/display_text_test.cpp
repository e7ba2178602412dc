#include "output/display_text.h"

#include <gtest/gtest.h>

#include "support/table.h"

namespace serverlog::program {
namespace {

TEST(DisplayText, ShowsWhatATerminalWouldObey) {
    // The width is that of the visible text.
    const test::Table<std::string, std::string, std::size_t> rows = {
        {"plain \\ text", "plain \\ text", 12},
        {std::string("a\0\n\r\t\x1b[2J\x7f", 10), "a\\x00\\n\\r\\t\\x1b[2J\\x7f", 22},
        {"\xc2\x9b"
         "2J",
         "\\u009b2J", 8},  // C1 control
        {"\xe2\x80\xae"
         "abc\xe2\x80\xa8",
         "\\u202eabc\\u2028", 15},                                    // right to left, line end
        {"\xf3\xa0\x81\x81", "\\U000e0041", 10},                      // tag character
        {"\xff\xc3", "\xef\xbf\xbd\xef\xbf\xbd", 2},                  // no UTF-8
        {"\xc3\xa4\xd0\x96", "\xc3\xa4\xd0\x96", 2},                  // Latin, Cyrillic
        {"a\xcc\x88", "a\xcc\x88", 1},                                // combining
        {"\xe6\xbc\xa2\xe5\xad\x97", "\xe6\xbc\xa2\xe5\xad\x97", 4},  // wide
        {"", "", 0},
    };
    for (const auto& [text, visible, width] : rows) {
        SCOPED_TRACE(visible);
        EXPECT_EQ(VisibleText(text), visible);
        EXPECT_EQ(DisplayWidth(visible), width);
    }
}

TEST(DisplayText, IsCutBetweenCharacters) {
    EXPECT_EQ(CutToWidth("abcd", 4), "abcd");
    EXPECT_EQ(CutToWidth("abcde", 4), "abc\xe2\x80\xa6");
    EXPECT_EQ(CutToWidth("\xe6\xbc\xa2\xe5\xad\x97", 3), "\xe6\xbc\xa2\xe2\x80\xa6");
    EXPECT_EQ(CutToWidth("\xe6\xbc\xa2\xe5\xad\x97", 2), "\xe2\x80\xa6");
    EXPECT_EQ(CutToWidth("ab", 0), "");
}

}  // namespace
}  // namespace serverlog::program
