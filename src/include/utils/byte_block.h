#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace serverlog::utils {

/// Sixteen bytes of a text that are looked at all at once: every byte of an export is looked at,
/// and that takes a quarter of the time of a table which is asked for each.
class ByteBlock {
 public:
    /// Says of each byte whether it is meant: 0 for no. Joined with "|". A vector of g++ and
    /// clang++, which put it into a register of the processor.
    using Marks = signed char __attribute__((vector_size(16)));

    /// In bytes.
    static constexpr std::size_t kSize = sizeof(Marks);

    /// Takes the sixteen bytes from there on.
    explicit ByteBlock(const char* bytes) { std::memcpy(&bytes_, bytes, kSize); }

    /// Takes all bytes of a text of one to fifteen, some of them more than once.
    static ByteBlock OfShort(std::string_view text) {
        const char* const end = text.data() + text.size();
        if (text.size() >= sizeof(std::uint64_t)) {
            return ByteBlock(Load<std::uint64_t>(text.data()),
                             Load<std::uint64_t>(end - sizeof(std::uint64_t)));
        }
        const std::uint64_t word = text.size() >= sizeof(std::uint32_t)
                                       ? Join(Load<std::uint32_t>(text.data()),
                                              Load<std::uint32_t>(end - sizeof(std::uint32_t)))
                                       : OfThree(text.front(), text[text.size() / 2], text.back());
        return ByteBlock(word, word);
    }

    /// Those that are `c`.
    Marks Equal(char c) const { return bytes_ == Each(c); }

    /// Those below `c`, a character of ASCII, and those that are no ASCII.
    Marks BelowOrBeyond(char c) const { return bytes_ < Each(c); }

    /// Whether any byte is marked.
    static bool Any(const Marks& marks) {
        std::uint64_t words[2];
        std::memcpy(words, &marks, sizeof words);
        return (words[0] | words[1]) != 0;
    }

 private:
    ByteBlock(std::uint64_t low, std::uint64_t high) {
        const std::uint64_t words[] = {low, high};
        std::memcpy(&bytes_, words, kSize);
    }

    template <class Word>
    static Word Load(const char* bytes) {
        Word word = 0;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    static std::uint64_t Join(std::uint32_t low, std::uint32_t high) {
        return low | std::uint64_t{high} << 32;
    }

    static std::uint64_t OfThree(char a, char b, char c) {
        const char bytes[] = {a, b, c, c};
        const auto word = Load<std::uint32_t>(bytes);
        return Join(word, word);
    }

    static Marks Each(char character) {
        const auto c = static_cast<signed char>(character);
        return Marks{c, c, c, c, c, c, c, c, c, c, c, c, c, c, c, c};
    }

    Marks bytes_;  // as signed numbers, of which those that are no ASCII are negative
};

/// Whether a text has a byte that `mark(ByteBlock)` marks.
template <class Mark>
bool HasMarked(std::string_view text, Mark mark) {
    constexpr std::size_t kStep = ByteBlock::kSize;
    if (text.size() < kStep) {
        return !text.empty() && ByteBlock::Any(mark(ByteBlock::OfShort(text)));
    }
    ByteBlock::Marks marks = mark(ByteBlock(text.data() + text.size() - kStep));
    for (std::size_t place = 0; place + kStep < text.size(); place += kStep) {
        marks |= mark(ByteBlock(text.data() + place));
    }
    return ByteBlock::Any(marks);
}

}  // namespace serverlog::utils
