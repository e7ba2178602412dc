#include "merodbquery/sqlite_backend.h"

// SOCI's header declares the C interface of SQLite once more, in a namespace of its own, so it
// stays in this one source.
#include <soci/sqlite3/soci-sqlite3.h>

namespace merodbquery {
namespace {

sqlite_api::sqlite3*& HandleOf(soci::session& session) {
    return static_cast<soci::sqlite3_session_backend*>(session.get_backend())->conn_;
}

}  // namespace

void OpenOnHandle(soci::session& session, sqlite3* handle) {
    session.open(soci::sqlite3, ":memory:");
    sqlite_api::sqlite3_close(HandleOf(session));
    ReplaceHandle(session, handle);
}

void ReplaceHandle(soci::session& session, sqlite3* handle) {
    HandleOf(session) = reinterpret_cast<sqlite_api::sqlite3*>(handle);
}

void ForgetBoundValues(soci::statement& statement) {
    statement.bind_clean_up();
    auto* backend = static_cast<soci::sqlite3_statement_backend*>(statement.get_backend());
    // SQLite still points at the texts of whoever bound last, which may be gone.
    sqlite_api::sqlite3_reset(backend->stmt_);
    sqlite_api::sqlite3_clear_bindings(backend->stmt_);
    backend->useData_.clear();
    backend->boundByName_ = false;
    backend->boundByPos_ = false;
}

}  // namespace merodbquery
