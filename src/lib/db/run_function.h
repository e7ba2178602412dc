#pragma once

#include <merodbquery/session.h>

namespace serverlog::db::internal {

/// The SQL aggregate bounds_of_run(value, number): the first and the last number, as a text that
/// stands behind BETWEEN, where all values are whole numbers that never fall, and each number is
/// one more than the one before. NULL where that is not so, and where nothing comes.
///
/// With the rowid as the number it tells that rows stand in their table in the order of the value,
/// and no others among them; whichever way SQLite goes over the rows.
inline constexpr char kRunFunction[] = "bounds_of_run";

/// Makes the function known to the session's connection. Throws soci::soci_error when SQLite
/// refuses.
void RegisterRunFunction(merodbquery::Session& session);

}  // namespace serverlog::db::internal
