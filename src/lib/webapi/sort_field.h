#pragma once

#include <cstddef>
#include <string>

namespace serverlog::webapi::internal {

/// A client's field with the column that it is sorted by.
struct SortField {
    const char* name;
    const char* column;
};

/// The column of a field; "date" for a name that is none.
template <std::size_t Count>
std::string SortColumn(const SortField (&fields)[Count], const std::string& name) {
    for (const SortField& field : fields) {
        if (name == field.name) {
            return field.column;
        }
    }
    return "date";
}

}  // namespace serverlog::webapi::internal
