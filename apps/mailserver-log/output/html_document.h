#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace serverlog::program {

/// Looks at the document of an export while it goes by: where its HTTP headers end, and how many
/// rows it has.
class HtmlDocument {
 public:
    /// Takes the next piece of it.
    /// @return what of the piece stands behind the HTTP headers
    std::string_view Take(std::string_view piece);

    /// The rows so far, without the one of the headings.
    std::uint64_t rows() const { return row_begins_ == 0 ? 0 : row_begins_ - 1; }

 private:
    /// A text that is looked for byte by byte, since it may be cut by the end of a piece.
    class Mark {
     public:
        explicit Mark(std::string_view text) : text_(text) {}
        bool EndsWith(char c);

     private:
        std::string_view text_;
        std::size_t matched_ = 0;
    };

    Mark headers_end_{"\n\n"};
    Mark row_begin_{"<tr>\n"};
    bool in_headers_ = true;
    std::uint64_t row_begins_ = 0;
};

}  // namespace serverlog::program
