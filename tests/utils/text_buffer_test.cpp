#include <gtest/gtest.h>
#include <mailserver-log/utils/text_buffer.h>

#include <cstdint>
#include <limits>
#include <string>

namespace serverlog::utils {
namespace {

// Texts that differ at each place, so that none is copied to a wrong one.
std::string TextOf(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += static_cast<char>('0' + i % 71);
    }
    return text;
}

TEST(TextBuffer, CopiesTextsOfEveryLength) {
    for (std::size_t size = 0; size < 70; ++size) {
        std::string to(size + 2, '#');
        EXPECT_EQ(TextBuffer::Copy(TextOf(size), to.data() + 1), to.data() + 1 + size);
        EXPECT_EQ(to, "#" + TextOf(size) + "#");
    }
}

TEST(TextBuffer, KeepsWhatItHasWhenItGrows) {
    TextBuffer buffer;
    EXPECT_TRUE(buffer.Empty());
    EXPECT_EQ(buffer.Text(), "");
    for (int round = 0; round < 2; ++round) {
        std::string all;
        // Past its first memory in small steps and in one that is longer than all of it.
        for (const std::size_t size : {0U, 1U, 15U, 500U, 507U, 1U, 30U, 9000U}) {
            buffer.Append(TextOf(size));
            buffer.Append('.');
            all += TextOf(size) + '.';
            EXPECT_EQ(buffer.Text(), all);
        }
        buffer.RemoveLast();
        all.pop_back();
        EXPECT_EQ(buffer.Text(), all);
        buffer.Clear();
        EXPECT_TRUE(buffer.Empty());
    }
    buffer.AppendNumber(std::numeric_limits<std::int32_t>::min());
    buffer.AppendNumber(std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(buffer.Text(), "-214748364818446744073709551615");
}

}  // namespace
}  // namespace serverlog::utils
