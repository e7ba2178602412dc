#include "db/securitylog/security_log_upgrade.h"

#include <string>

#include "db/securitylog/security_log_schema.h"
#include "utils/db_command.h"

namespace serverlog::db::securitylog {

namespace {

constexpr char kDropOldIndices[] =
    "\nDROP INDEX IF EXISTS date_index;"
    "\nDROP INDEX IF EXISTS src_index;"
    "\nDROP INDEX IF EXISTS type_index;"
    "\nDROP INDEX IF EXISTS event_index;"
    "\nDROP INDEX IF EXISTS security_log_table_host_idx;"
    "\nDROP INDEX IF EXISTS security_log_table_event_idx;";

}  // namespace

bool V0_NOOP(merodbquery::Session& /*session*/) {
    return true;
}

bool V1_CreateDataBase(merodbquery::Session& session) {
    return utils::ExecUnlessColumnExists(session, kSchema.Table(), "date", kSchema.CreateTable(1));
}

bool V2_CreateIndex(merodbquery::Session& session) {
    return utils::ExecMultipleQuery(session, kDropOldIndices + kSchema.CreateIndices(2));
}

bool V3_InsertSenderRecipientColumn(merodbquery::Session& session) {
    return utils::ExecUnlessColumnExists(session, kSchema.Table(), "sender",
                                         kSchema.AddColumns(3) + kSchema.CreateIndices(3));
}

bool V4_InsertSubjectColumn(merodbquery::Session& session) {
    return utils::ExecUnlessColumnExists(session, kSchema.Table(), "subject",
                                         kSchema.AddColumns(4) + kSchema.CreateIndices(4));
}

}  // namespace serverlog::db::securitylog
