#pragma once

#include "log/adminlog/toolkit/translator.h"

#include <json/value.h>

#include <cstddef>
#include <string>
#include <vector>

namespace serverlog::log::adminlog {

/// Names a text of the mail server's text files. Wherever one is written down its type stands
/// before the braces, `Label{"domain", "role"}`, so that a search finds each; a statement shows
/// nothing for one that the text files lack.
struct Label {
    constexpr explicit Label(const char* text_section, const char* text_key)
        : section(text_section), key(text_key) {}

    const char* section;
    const char* key;
};

/// The label's English text; empty when the text files lack it.
std::string LabelText(Label const& label);

/// A value that is shown by a text.
struct Word {
    const char* value;
    Label label;
};

/// The text of `value` in a table of words; empty for a value that is not in it.
///
/// @param words  the first of `count` rows
std::string WordText(std::string const& value, Word const* words, std::size_t count);

/// WordText in a whole table.
template <std::size_t Count>
std::string WordText(std::string const& value, Word const (&words)[Count]) {
    return WordText(value, words, Count);
}

/// One row of a tab's label table.
struct Setting {
    Label label;
    const char* parameter;
    /// As Translator::format; null for a value that is shown as it is.
    std::string (*format)(std::string const& member, Json::Value const& object);
    /// Stands before the label's text.
    const char* prefix = "";
    /// Stands behind the label's text.
    const char* suffix = "";
};

/// The translators of a label table, in its order.
///
/// @param settings  the first of `count` rows
std::vector<Translator> MakeTranslators(Setting const* settings, std::size_t count);

/// MakeTranslators of a whole table.
template <std::size_t Count>
std::vector<Translator> MakeTranslators(Setting const (&settings)[Count]) {
    return MakeTranslators(settings, Count);
}

}  // namespace serverlog::log::adminlog
