#include "input/object_scanner.h"

namespace serverlog::program {

std::size_t ObjectScanner::Scan(std::string_view piece) {
    for (std::size_t i = 0; i < piece.size(); ++i) {
        const char c = piece[i];
        if (escaped_) {
            escaped_ = false;
        } else if (in_text_) {
            escaped_ = c == '\\';
            in_text_ = c != '"';
        } else if (c == '"') {
            in_text_ = true;
        } else if (c == '{') {
            ++depth_;
        } else if (c == '}' && --depth_ == 0) {
            return i + 1;
        }
    }
    return kOpen;
}

}  // namespace serverlog::program
