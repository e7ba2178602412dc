#pragma once

#include <string>

namespace platform {

/// One line of the form that settings and text files share:
///
///     key="value"
///
/// with a backslash before each double quote and each backslash of the value.
struct KeyValueLine {
    enum class Kind {
        Blank,     ///< nothing, or a comment that begins with "#"
        KeyValue,  ///< `key` and `value` hold what the line says
        Other,     ///< neither; `key` holds the line without blanks around it
    };

    Kind kind = Kind::Blank;
    std::string key;
    std::string value;
};

/// Reads a line without its line end. Blanks around the line, the key and the value are passed
/// over, a carriage return counts as one; a backslash in the value takes the next character as it
/// is.
KeyValueLine ParseKeyValueLine(const std::string& line);

/// Writes a line without its line end. ParseKeyValueLine reads it again if the key holds no blank
/// at its ends, no "=" and no leading "#", and neither holds a line feed.
std::string FormatKeyValueLine(const std::string& key, const std::string& value);

}  // namespace platform
