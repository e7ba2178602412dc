#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

namespace serverlog::log::adminlog {

/// Whether `statement` is one of the templates that a translate function knows, for those that fill
/// several in the same way.
template <std::size_t Count>
bool IsOneOf(std::string const& statement, char const* const (&templates)[Count]) {
    return std::find(std::begin(templates), std::end(templates), statement) != std::end(templates);
}

}  // namespace serverlog::log::adminlog
