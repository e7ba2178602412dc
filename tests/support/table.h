#pragma once

#include <tuple>
#include <vector>

namespace test {

/// A table of cases. The loop over it names the columns: for (const auto& [query, rows] : …).
template <class... Columns>
using Table = std::vector<std::tuple<Columns...>>;

}  // namespace test
