#include <gtest/gtest.h>
#include <mailserver-log/utils/byte_block.h>

#include <string>

namespace serverlog::utils {
namespace {

// Every byte at every place of texts that are shorter and longer than a few steps.
TEST(ByteBlock, FindsAByteWhereverItStands) {
    for (std::size_t size = 1; size < 3 * ByteBlock::kSize + 2; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text(size, 'a');
                text[place] = static_cast<char>(byte);
                const auto has = [&text](auto mark) { return HasMarked(text, mark); };
                EXPECT_EQ(has([](const ByteBlock& bytes) { return bytes.Equal('"'); }), byte == '"')
                    << size << " " << place << " " << byte;
                EXPECT_EQ(has([](const ByteBlock& bytes) { return bytes.BelowOrBeyond(' '); }),
                          byte < ' ' || byte >= 0x80)
                    << size << " " << place << " " << byte;
            }
        }
    }
    EXPECT_FALSE(HasMarked("", [](const ByteBlock& bytes) { return bytes.BelowOrBeyond('~'); }));
}

}  // namespace
}  // namespace serverlog::utils
