#pragma once

#include <sqlite3.h>

namespace merodbquery {

/// The SQL function behind Condition::HasSubstring: contains_ignoring_case(value, text) is 1, 0, or
/// NULL when one of both is NULL. `text` is prepared once a statement where it is a bound value.
inline constexpr char kSubstringFunction[] = "contains_ignoring_case";

/// Makes the function known on `handle`. False when SQLite refuses.
bool RegisterSubstringFunction(sqlite3* handle);

}  // namespace merodbquery
