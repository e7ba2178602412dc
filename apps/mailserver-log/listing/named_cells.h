#pragma once

#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/row_view.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "listing/list_view.h"

namespace serverlog::program {

/// Some cells of a store's records, as a person reads them. Store is a class of stores.h.
template <class Store>
class NamedCells {
 public:
    /// @param columns  names of the record's columns, in the order wanted; nullptr for a cell that
    ///                 stays empty
    explicit NamedCells(const std::vector<const char*>& columns) {
        const std::vector<std::string> names = record::ColumnNames<typename Store::Record>();
        for (const char* column : columns) {
            const auto place =
                column == nullptr ? names.end() : std::find(names.begin(), names.end(), column);
            indices_.push_back(static_cast<std::size_t>(place - names.begin()));
        }
    }

    /// The row's cells of these columns.
    std::vector<std::string> Of(const record::RowView<typename Store::Record>& row) {
        std::vector<std::string> all;
        readable_.ForEach(row, [&all](std::string_view cell) { all.emplace_back(cell); });
        std::vector<std::string> cells;
        cells.reserve(indices_.size());
        for (const std::size_t index : indices_) {
            cells.push_back(index < all.size() ? all[index] : std::string());
        }
        return cells;
    }

 private:
    ReadableCells<typename Store::Record> readable_;
    std::vector<std::size_t> indices_;
};

}  // namespace serverlog::program
