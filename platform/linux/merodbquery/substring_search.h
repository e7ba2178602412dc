#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace merodbquery {

/// Looks for one text in many others without regard to letter case, by the rules of
/// Condition::HasSubstring. Holds a buffer, so that a search allocates only for a text that is
/// longer than all before; one object is for one thread.
class SubstringSearch {
 public:
    /// @param text  UTF-8, any bytes allowed; limits as FoldCase
    explicit SubstringSearch(std::string_view text);

    /// True when the text of the constructor occurs in `text`. Limits as FoldCase.
    bool FoundIn(std::string_view text);

 private:
    std::string wanted_;
    std::string buffer_;
};

/// Brings `text` into the form in which texts that differ in letter case only are equal: full case
/// folding of the Unicode Standard, chapter 3.13, with the dotted and dotless i merged. Bytes that
/// are not UTF-8 become U+FFFD.
///
/// @param buffer  receives the result at its beginning; grows as needed and never shrinks
/// @return the length of the result in bytes; std::length_error for a text beyond 700 MB
std::size_t FoldCase(std::string_view text, std::string& buffer);

}  // namespace merodbquery
