#pragma once

#include <json/value.h>

#include <string>

namespace MDS {

/// Reads the texts of a language.
class LocalizedStringParser {
 public:
    /// Parses a text file of sections and keys, encoded in UTF-8:
    ///
    ///     # a comment
    ///     [section]
    ///     key="text"
    ///
    /// Inside a text a backslash takes the next character as it is; it stands before each double
    /// quote and each backslash. Blank lines and lines that begin with "#" are passed over, blanks
    /// around a line too. A line that is none of these, or a key before the first section, is
    /// skipped with a line in the mail log. A section may come again and goes on then; of a
    /// repeated key the last text counts.
    ///
    /// @param path  the file, or a folder that holds the file as `strings`
    /// @return object of sections, each an object of keys with their texts; an empty object when
    ///         there is no such file, and also, with a line in the mail log, when it cannot be read
    ///
    /// Safe to call from several threads at once.
    static Json::Value ParseTexts(const std::string& path);
};

}  // namespace MDS
