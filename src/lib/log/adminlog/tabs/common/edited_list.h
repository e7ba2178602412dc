#pragma once

#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/statement_rows.h"

#include <json/value.h>

#include <cstddef>
#include <string>

namespace serverlog::log::adminlog {

/// For pages that keep several lists and tell only which of them was edited: one row with the text
/// that `lists` has for the request's "list_type"; none for any other.
template <std::size_t Count>
StatementRows EditedListRow(Json::Value const& params, Word const (&lists)[Count]) {
    std::string const list = WordText(GetKeyVal(params, "list_type"), lists);
    return list.empty() ? Ignore() : StatementRows{{list}};
}

}  // namespace serverlog::log::adminlog
