#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace serverlog::program {

/// `text` as it can stand in one line on a terminal without doing anything there: control
/// characters and invisible ones that change the direction of writing are spelt as in C ("\n",
/// "\x1b", "\u202e"), bytes that are no UTF-8 become U+FFFD.
std::string VisibleText(std::string_view text);

/// `text` with U+FFFD for bytes that are no UTF-8.
std::string ValidUtf8(std::string_view text);

/// The columns that `text` takes on a terminal. Wide characters (Unicode Standard Annex 11) take
/// two, combining ones none.
///
/// @param text  UTF-8 without control characters
std::size_t DisplayWidth(std::string_view text);

/// The longest beginning of `text` that takes at most `width` columns; if something is cut off, it
/// ends with "…".
std::string CutToWidth(std::string_view text, std::size_t width);

}  // namespace serverlog::program
