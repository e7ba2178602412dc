#pragma once

#include <merodbquery/condition.h>
#include <merodbquery/session.h>

#include <string>

namespace serverlog::db::internal {

/// The index of a table that SQLite can walk along to have the rows by a column, and those with the
/// same value by their rowid: one on that column alone.
///
/// @param schema, table, column  names, as LisTable takes them
/// @return its name; empty if there is none. Throws soci::soci_error if the schema can't be read.
std::string IndexFor(merodbquery::Session& session, const std::string& schema,
                     const std::string& table, const std::string& column);

/// Whether a row of a table has no value in a column that has an index.
///
/// @param table  with its schema
/// Throws soci::soci_error if the table can't be read.
bool HasNull(merodbquery::Session& session, const std::string& table, const std::string& column);

/// Whether SQLite, left to itself, would look up the rows that match by an index for a column that
/// has to equal one value, and then sort them. Such rows come to the sorting by their rowid.
///
/// @param table  with its schema
/// Throws soci::soci_error if the statement can't be prepared.
bool SortsAnEquality(merodbquery::Session& session, const std::string& table,
                     const merodbquery::Condition& condition, const std::string& sort);

}  // namespace serverlog::db::internal
