#pragma once

#include <string>

namespace serverlog::program {

/// A message id or address without the angle brackets around it, if there are any.
inline std::string WithoutBrackets(const std::string& text) {
    const bool has_brackets = text.size() >= 2 && text.front() == '<' && text.back() == '>';
    return has_brackets ? text.substr(1, text.size() - 2) : text;
}

}  // namespace serverlog::program
