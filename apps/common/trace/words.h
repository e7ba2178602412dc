#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace serverlog::program {

/// Calls `visit(word)` for each word of a log line, until that returns true; returns whether it
/// did. A word is what stands between blanks, commas, colons, semicolons, quotes and brackets, as
/// queue ids, message ids and addresses do.
template <class Visit>
bool AnyWord(std::string_view line, Visit visit) {
    constexpr std::string_view kBetween = " \t\r\n,:;\"'<>()[]";
    while (!line.empty()) {
        const std::size_t end = std::min(line.find_first_of(kBetween), line.size());
        if (end > 0 && visit(line.substr(0, end))) {
            return true;
        }
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return false;
}

}  // namespace serverlog::program
