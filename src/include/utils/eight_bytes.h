#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace serverlog::utils {

/// Eight bytes of a text that are looked at all at once: every byte of an export is looked at, and
/// that takes half the time of a table which is asked for each.
///
/// The functions mark the bytes that are meant with their highest bit. Bytes behind a marked one
/// may be marked by mistake, since the arithmetic carries; so it only counts whether any is.
class EightBytes {
 public:
    /// Takes the eight bytes from there on.
    explicit EightBytes(const char* bytes) { std::memcpy(&word_, bytes, sizeof word_); }

    /// Those that are `c`, a character of ASCII.
    std::uint64_t Equal(char c) const {
        const std::uint64_t zero = word_ ^ Each(c);
        return (zero - Each(1)) & ~zero & kHighest;
    }

    /// Those below `c`, a character of ASCII.
    std::uint64_t Below(char c) const { return (word_ - Each(c)) & ~word_ & kHighest; }

    /// Those that are no ASCII.
    std::uint64_t Beyond() const { return word_ & kHighest; }

 private:
    static constexpr std::uint64_t Each(char c) {
        return 0x0101010101010101U * static_cast<unsigned char>(c);
    }

    static constexpr std::uint64_t kHighest = 0x8080808080808080U;

    std::uint64_t word_ = 0;
};

/// Whether a text has a byte that `mark(EightBytes)` marks.
///
/// @param mark  must not mark the character 0
template <class Mark>
bool HasMarked(std::string_view text, Mark mark) {
    constexpr std::size_t kStep = sizeof(std::uint64_t);
    if (text.size() < kStep) {
        char bytes[kStep] = {'0', '0', '0', '0', '0', '0', '0', '0'};
        std::copy(text.begin(), text.end(), bytes);
        return mark(EightBytes(bytes)) != 0;
    }
    std::uint64_t marks = mark(EightBytes(text.data() + text.size() - kStep));
    for (std::size_t place = 0; place + kStep < text.size(); place += kStep) {
        marks |= mark(EightBytes(text.data() + place));
    }
    return marks != 0;
}

}  // namespace serverlog::utils
