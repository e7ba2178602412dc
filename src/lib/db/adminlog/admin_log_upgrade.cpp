#include "db/adminlog/admin_log_upgrade.h"

#include <string>

#include "db/adminlog/admin_log_schema.h"
#include "utils/db_command.h"

namespace serverlog::db::adminlog {

namespace {

// The columns have been the same since the first version, but for those that are named here.
std::string Definitions() {
    return kSchema.ColumnDefinitions(1);
}

std::string DefinitionsWithId() {
    return "\n\tid INTEGER PRIMARY KEY AUTOINCREMENT," + Definitions();
}

/// The script that rebuilds the table in a transaction, with nothing but the columns given, and
/// then its indices, which went with the old table.
///
/// @param definitions  the columns for CREATE TABLE
/// @param names        the same columns, joined with ", "
/// @param also         statements at the end of the transaction
std::string RebuildTable(const std::string& definitions, const std::string& names,
                         const std::string& also) {
    return "\nBEGIN TRANSACTION;"
           "\nCREATE TEMPORARY TABLE admin_log_backup(" +
           definitions +
           ");"
           "\nINSERT INTO admin_log_backup SELECT " +
           names +
           " FROM admin_log;"
           "\nDROP TABLE admin_log;"
           "\nCREATE TABLE admin_log(" +
           definitions +
           ");"
           "\nINSERT INTO admin_log SELECT " +
           names +
           " FROM admin_log_backup;"
           "\nDROP TABLE admin_log_backup;" +
           also + "\nCOMMIT;" + kSchema.CreateIndices(1);
}

/// Runs a script after putting the file into WAL mode.
bool RunInWalMode(merodbquery::Session& session, const std::string& script) {
    return session.RawQuery("PRAGMA journal_mode = WAL;") &&
           utils::ExecMultipleQuery(session, script);
}

}  // namespace

bool V0_NOOP(merodbquery::Session& /*session*/) {
    return true;
}

bool V1_CreateDataBase(merodbquery::Session& session) {
    return RunInWalMode(session,
                        "\nCREATE TABLE webapi ("
                        "\n\tid INTEGER PRIMARY KEY AUTOINCREMENT,"
                        "\n\tfunc_name TEXT NOT NULL,"
                        "\n\tlog_template TEXT NOT NULL,"
                        "\n\ttab_type INTEGER NOT NULL,"
                        "\n\tshould_record BOOLEAN DEFAULT TRUE,"
                        "\n\tCONSTRAINT func_name_log_template_unique"
                        " UNIQUE (func_name, log_template));"
                        "\nCREATE TABLE admin_log (" +
                            DefinitionsWithId() +
                            ","
                            "\n\twebapi INTEGER,"
                            "\n\tFOREIGN KEY (webapi) REFERENCES\twebapi (id));" +
                            kSchema.CreateIndices(1) +
                            "\nCREATE INDEX IF NOT EXISTS func_name_idx ON webapi (func_name);");
}

bool V2_UpdateWebapiRecord(merodbquery::Session& /*session*/) {
    return true;
}

bool V3_DropWebapiTable(merodbquery::Session& session) {
    return RunInWalMode(session, RebuildTable(DefinitionsWithId(), "id, " + kSchema.ColumnNames(1),
                                              "\nDROP TABLE webapi;"));
}

bool V4_DropIdColumn(merodbquery::Session& session) {
    return RunInWalMode(session, RebuildTable(Definitions(), kSchema.ColumnNames(1), ""));
}

}  // namespace serverlog::db::adminlog
