#pragma once

#include <cstddef>
#include <string>

namespace serverlog::log::adminlog {

/// A value that is shown by a text which is the same in all languages.
struct FixedWord {
    char const* value;
    char const* text;
};

/// The text of `value` in a table of words; empty for a value that is not in it.
template <std::size_t Count>
std::string FixedWordText(std::string const& value, FixedWord const (&words)[Count]) {
    for (FixedWord const& word : words) {
        if (value == word.value) {
            return word.text;
        }
    }
    return std::string();
}

}  // namespace serverlog::log::adminlog
