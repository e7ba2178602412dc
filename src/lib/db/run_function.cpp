#include "db/run_function.h"

#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

namespace serverlog::db::internal {

namespace {

using Number = sqlite_api::sqlite3_int64;

/// What came so far. SQLite makes it of zero bytes.
struct Run {
    bool begun;
    bool broken;
    Number first;
    Number last;
    Number value;  // of the last
};

void Step(sqlite_api::sqlite3_context* context, int /*count*/,
          sqlite_api::sqlite3_value** arguments) {
    auto* run = static_cast<Run*>(sqlite_api::sqlite3_aggregate_context(context, sizeof(Run)));
    if (run == nullptr) {
        return sqlite_api::sqlite3_result_error_nomem(context);
    }
    if (sqlite_api::sqlite3_value_type(arguments[0]) != SQLITE_INTEGER) {
        run->broken = true;
    }
    const Number value = sqlite_api::sqlite3_value_int64(arguments[0]);
    const Number number = sqlite_api::sqlite3_value_int64(arguments[1]);
    if (!run->begun) {
        *run = {true, run->broken, number, number, value};
        return;
    }
    // The first comparison keeps the smallest number from overflowing in the second.
    run->broken =
        run->broken || number <= run->last || number - 1 != run->last || value < run->value;
    run->last = number;
    run->value = value;
}

void Finish(sqlite_api::sqlite3_context* context) {
    const auto* run = static_cast<Run*>(sqlite_api::sqlite3_aggregate_context(context, 0));
    if (run == nullptr || run->broken) {
        return sqlite_api::sqlite3_result_null(context);
    }
    // Without memory the text is NULL, and so is the result.
    char* const bounds = sqlite_api::sqlite3_mprintf("%lld AND %lld", run->first, run->last);
    sqlite_api::sqlite3_result_text(context, bounds, -1, sqlite_api::sqlite3_free);
}

}  // namespace

void RegisterRunFunction(merodbquery::Session& session) {
    soci::session& raw = session.GetRawSession();
    auto* handle = static_cast<soci::sqlite3_session_backend*>(raw.get_backend())->conn_;
    constexpr int kArguments = 2;
    const int result = sqlite_api::sqlite3_create_function_v2(
        handle, kRunFunction, kArguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, nullptr,
        Step, Finish, nullptr);
    if (result != SQLITE_OK) {
        throw soci::soci_error(sqlite_api::sqlite3_errstr(result));
    }
}

}  // namespace serverlog::db::internal
