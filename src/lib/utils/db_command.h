#pragma once

#include <merodbquery/session.h>

#include <string>
#include <vector>

namespace serverlog::utils {

/// Runs the statements of a script, one by one, each through RawQuery.
///
/// @param script  statements separated by ";"; no string literal in it may hold one. Empty is fine
///
/// The first statement that fails ends it: an error line, and false. A transaction that the script
/// opened stays open then.
bool ExecMultipleQuery(merodbquery::Session& session, const std::string& script);

/// The names of a table's columns in the order of the schema; none for a table that does not exist.
///
/// @param table    the table's name; put into SQL as it is, so never from outside
/// @param columns  the most names to give
///
/// Empty, with an error line, if the query fails, as it does inside an open transaction.
std::vector<std::string> EnumColumns(merodbquery::Session& session, const std::string& table,
                                     unsigned long columns);

/// The most columns of a table that the library looks at.
inline constexpr unsigned long kMostColumns = 32;

/// Whether EnumColumns gives exactly this name; false also if it fails.
bool ColumnExist(merodbquery::Session& session, const std::string& table, const std::string& name,
                 unsigned long columns);

/// ExecMultipleQuery, but true and nothing done if the table has the column already; only its first
/// kMostColumns columns are looked at.
bool ExecUnlessColumnExists(merodbquery::Session& session, const std::string& table,
                            const std::string& column, const std::string& script);

}  // namespace serverlog::utils
