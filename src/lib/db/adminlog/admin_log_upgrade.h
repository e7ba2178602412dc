#pragma once

#include <merodbquery/session.h>

/// The steps of the admin log store's schema; the number in a name is the version that the step
/// produces. Steps 1, 3 and 4 put the file into WAL mode; 3 and 4 are one transaction each, which
/// stays open if a statement in it fails. Each gives false if a statement failed.
namespace serverlog::db::adminlog {

/// Does nothing.
bool V0_NOOP(merodbquery::Session& session);

/// Makes the tables webapi and admin_log with their indices.
bool V1_CreateDataBase(merodbquery::Session& session);

/// Does nothing: the table webapi that it once filled goes away in the next step.
bool V2_UpdateWebapiRecord(merodbquery::Session& session);

/// Removes the table webapi and the column that refers to it.
bool V3_DropWebapiTable(merodbquery::Session& session);

/// Removes the column id.
bool V4_DropIdColumn(merodbquery::Session& session);

}  // namespace serverlog::db::adminlog
