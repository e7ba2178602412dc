#include "merodbquery/substring_search.h"

#include <unicode/ucasemap.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

namespace merodbquery {
namespace {

struct CaseMapCloser {
    void operator()(UCaseMap* map) const { ucasemap_close(map); }
};

const UCaseMap* CaseMap() {
    static const std::unique_ptr<UCaseMap, CaseMapCloser> map = [] {
        UErrorCode error = U_ZERO_ERROR;
        UCaseMap* opened = ucasemap_open("", U_FOLD_CASE_DEFAULT, &error);
        if (U_FAILURE(error)) {
            throw std::runtime_error(u_errorName(error));
        }
        return std::unique_ptr<UCaseMap, CaseMapCloser>(opened);
    }();
    return map.get();
}

// Sets the bit that tells lower from upper case in each byte that is an ASCII capital. The sums
// carry into a byte's highest bit from A on, and from behind Z on; bytes that have it already are
// no ASCII.
std::uint64_t FoldAsciiWord(std::uint64_t word) {
    constexpr std::uint64_t kEachByte = 0x0101010101010101;
    constexpr std::uint64_t kHighBits = 0x80 * kEachByte;
    const std::uint64_t low_bits = word & ~kHighBits;
    const std::uint64_t from_a = low_bits + (0x80 - 'A') * kEachByte;
    const std::uint64_t behind_z = low_bits + (0x80 - 'Z' - 1) * kEachByte;
    return word | ((from_a ^ behind_z) & ~word & kHighBits) >> 2;
}

// Log texts are nearly always ASCII, so that is tried first, eight bytes at a time. False when the
// text holds anything else; `folded` is then of no use.
bool FoldAscii(std::string_view text, char* folded) {
    std::uint64_t seen = 0;
    std::uint64_t word = 0;
    std::size_t done = 0;
    for (; done + sizeof word <= text.size(); done += sizeof word) {
        std::memcpy(&word, text.data() + done, sizeof word);
        seen |= word;
        word = FoldAsciiWord(word);
        std::memcpy(folded + done, &word, sizeof word);
    }
    for (; done < text.size(); ++done) {
        const auto letter = static_cast<unsigned char>(text[done]);
        seen |= letter;
        folded[done] = static_cast<char>(FoldAsciiWord(letter));
    }
    return (seen & 0x8080808080808080) == 0;
}

// The texts that are looked for arrive in upper case, where the dotless i has become I, and the
// lower case of the dotted I is i with a combining dot: without the language of the text these four
// can only be taken as one letter.
std::size_t MergeDottedAndDotlessI(char* text, std::size_t size) {
    constexpr std::string_view kDotlessI = "\xC4\xB1";
    constexpr std::string_view kCombiningDot = "\xCC\x87";
    std::size_t written = 0;
    for (std::size_t read = 0; read < size;) {
        const bool is_dotless =
            std::string_view(text + read, size - read).substr(0, 2) == kDotlessI;
        const char letter = is_dotless ? 'i' : text[read];
        read += is_dotless ? kDotlessI.size() : 1;
        text[written++] = letter;
        if (letter == 'i' &&
            std::string_view(text + read, size - read).substr(0, 2) == kCombiningDot) {
            read += kCombiningDot.size();
        }
    }
    return written;
}

std::int32_t FoldUnicode(std::string_view text, std::string& buffer) {
    UErrorCode error = U_ZERO_ERROR;
    return ucasemap_utf8FoldCase(CaseMap(), buffer.data(), static_cast<std::int32_t>(buffer.size()),
                                 text.data(), static_cast<std::int32_t>(text.size()), &error);
}

}  // namespace

std::size_t FoldCase(std::string_view text, std::string& buffer) {
    // No letter folds to more than three times its bytes.
    if (text.size() > std::numeric_limits<std::int32_t>::max() / 3) {
        throw std::length_error("text too long for a search without regard to case");
    }
    if (buffer.size() < text.size()) {
        buffer.resize(text.size());
    }
    if (FoldAscii(text, buffer.data())) {
        return text.size();
    }
    auto size = static_cast<std::size_t>(FoldUnicode(text, buffer));
    if (size > buffer.size()) {
        buffer.resize(size);
        size = static_cast<std::size_t>(FoldUnicode(text, buffer));
    }
    return MergeDottedAndDotlessI(buffer.data(), size);
}

SubstringSearch::SubstringSearch(std::string_view text) {
    wanted_.resize(FoldCase(text, buffer_));
    wanted_.assign(buffer_, 0, wanted_.size());
}

bool SubstringSearch::FoundIn(std::string_view text) {
    const std::size_t size = FoldCase(text, buffer_);
    return memmem(buffer_.data(), size, wanted_.data(), wanted_.size()) != nullptr;
}

}  // namespace merodbquery
