#pragma once

#include <merodbquery/session.h>

/// The steps of the mail log store's schema; the number in a name is the version that the step
/// produces. A step whose column is there already does nothing, so that a file passes whose tables
/// came from an older writer with an unset version. Each gives false if a statement failed.
namespace serverlog::db::emaillog {

/// Does nothing.
bool V0_NOOP(merodbquery::Session& session);

/// Makes the table.
bool V1_CreateDataBase(merodbquery::Session& session);

/// Replaces the indices of older writers; always runs.
bool V2_CreateIndex(merodbquery::Session& session);

/// Adds the column subject with its index.
bool V3_InsertSubjectColumn(merodbquery::Session& session);

/// Adds the column ori_mail_to, in spite of its name, with its index.
bool V4_InsertOriMailFromColumn(merodbquery::Session& session);

}  // namespace serverlog::db::emaillog
