#pragma once

#include <soci/soci.h>

// Not <sqlite3.h>: the source behind this header takes that in another namespace.
struct sqlite3;

namespace merodbquery {

/// Connects `session` to `handle` without SOCI's connect string, which cannot carry every path.
/// The session must not be open. It does not own the handle: take that out before closing it.
/// soci::soci_error when SOCI cannot set up its side.
void OpenOnHandle(soci::session& session, sqlite3* handle);

/// Lets `session`, which OpenOnHandle opened, go on with `handle`, null to take the old one out.
/// Statements that were prepared before stay with the old one, which the caller has to close.
void ReplaceHandle(soci::session& session, sqlite3* handle);

/// Lets `statement`, which ran before, take other values, and by other means.
void ForgetBoundValues(soci::statement& statement);

}  // namespace merodbquery
