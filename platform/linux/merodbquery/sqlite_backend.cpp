#include "merodbquery/sqlite_backend.h"

// SOCI's header declares the C interface of SQLite once more, in a namespace of its own, so it
// stays in this one source.
#include <soci/sqlite3/soci-sqlite3.h>

namespace merodbquery {
namespace {

soci::sqlite3_session_backend& Backend(soci::session& session) {
    return *static_cast<soci::sqlite3_session_backend*>(session.get_backend());
}

}  // namespace

void OpenOnHandle(soci::session& session, sqlite3* handle) {
    session.open(soci::sqlite3, ":memory:");
    sqlite_api::sqlite3_close(Backend(session).conn_);
    ReplaceHandle(session, handle);
}

void ReplaceHandle(soci::session& session, sqlite3* handle) {
    Backend(session).conn_ = reinterpret_cast<sqlite_api::sqlite3*>(handle);
}

}  // namespace merodbquery
