#pragma once

#include <merodbquery/session.h>

/// The steps of the security log store's schema; the number in a name is the version that the step
/// produces. A step whose column is there already does nothing, so that a file passes whose tables
/// came from an older writer with an unset version. Each gives false if a statement failed.
namespace serverlog::db::securitylog {

/// Does nothing.
bool V0_NOOP(merodbquery::Session& session);

/// Makes the table.
bool V1_CreateDataBase(merodbquery::Session& session);

/// Replaces the indices of older writers; always runs.
bool V2_CreateIndex(merodbquery::Session& session);

/// Adds the columns sender and recipient with their indices. Looks at sender alone.
bool V3_InsertSenderRecipientColumn(merodbquery::Session& session);

/// Adds the column subject with its index.
bool V4_InsertSubjectColumn(merodbquery::Session& session);

}  // namespace serverlog::db::securitylog
