#include "output/html_document.h"

namespace serverlog::program {

std::string_view HtmlDocument::Take(std::string_view piece) {
    while (in_headers_ && !piece.empty()) {
        in_headers_ = !headers_end_.EndsWith(piece.front());
        piece.remove_prefix(1);
    }
    for (const char c : piece) {
        row_begins_ += row_begin_.EndsWith(c) ? 1 : 0;
    }
    return piece;
}

// Enough for marks whose first character does not come again, or that consist of nothing else.
bool HtmlDocument::Mark::EndsWith(char c) {
    if (c != text_[matched_]) {
        matched_ = c == text_[0] ? 1 : 0;
        return false;
    }
    if (++matched_ < text_.size()) {
        return false;
    }
    matched_ = 0;
    return true;
}

}  // namespace serverlog::program
