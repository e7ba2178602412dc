#include "merodbquery/sql_text.h"

#include <soci/soci.h>

namespace merodbquery {
namespace {

// Not those of <cctype>, which go by the locale.
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsNameStart(char c) {
    return c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsName(const std::string& name) {
    bool at_start = true;
    for (const char c : name) {
        if (c == '.' ? at_start : !IsNameStart(c) && (at_start || !IsDigit(c))) {
            return false;
        }
        at_start = c == '.';
    }
    return !at_start;
}

}  // namespace

const std::string& CheckedName(const std::string& name) {
    if (!IsName(name)) {
        throw soci::soci_error("not the name of a table or column: \"" + name + "\"");
    }
    return name;
}

std::string Joined(const std::vector<std::string>& parts, const char* separator) {
    std::string text;
    for (const std::string& part : parts) {
        if (!text.empty()) {
            text += separator;
        }
        text += part;
    }
    return text;
}

}  // namespace merodbquery
