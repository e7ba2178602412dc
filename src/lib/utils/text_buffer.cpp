#include <mailserver-log/utils/text_buffer.h>

#include <algorithm>
#include <utility>

namespace serverlog::utils {

void TextBuffer::Grow(std::size_t size) {
    constexpr std::size_t kSmallest = 1024;  // most rows have less
    const std::string_view text = Text();
    const std::size_t capacity = std::max(kSmallest, 2 * (text.size() + size));
    std::unique_ptr<char[]> bytes(new char[capacity]);
    end_ = Copy(text, bytes.get());
    limit_ = bytes.get() + capacity;
    bytes_ = std::move(bytes);
}

}  // namespace serverlog::utils
