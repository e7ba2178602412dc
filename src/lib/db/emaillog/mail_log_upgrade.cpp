#include "db/emaillog/mail_log_upgrade.h"

#include <string>

#include "db/emaillog/mail_log_schema.h"
#include "utils/db_command.h"

namespace serverlog::db::emaillog {

namespace {

constexpr char kDropOldIndices[] =
    "\nDROP INDEX IF EXISTS message_index;"
    "\nDROP INDEX IF EXISTS queue_index;"
    "\nDROP INDEX IF EXISTS date_index;"
    "\nDROP INDEX IF EXISTS from_index;"
    "\nDROP INDEX IF EXISTS to_index;"
    "\nDROP INDEX IF EXISTS size_index;"
    "\nDROP INDEX IF EXISTS status_index;"
    "\nDROP INDEX IF EXISTS mail_log_table_queue_id_idx;"
    "\nDROP INDEX IF EXISTS mail_log_table_host_idx;";

}  // namespace

bool V0_NOOP(merodbquery::Session& /*session*/) {
    return true;
}

bool V1_CreateDataBase(merodbquery::Session& session) {
    return utils::ExecUnlessColumnExists(session, kSchema.Table(), "message_id",
                                         kSchema.CreateTable(1));
}

bool V2_CreateIndex(merodbquery::Session& session) {
    return utils::ExecMultipleQuery(session, kDropOldIndices + kSchema.CreateIndices(2));
}

bool V3_InsertSubjectColumn(merodbquery::Session& session) {
    return utils::ExecUnlessColumnExists(session, kSchema.Table(), "subject",
                                         kSchema.AddColumns(3) + kSchema.CreateIndices(3));
}

bool V4_InsertOriMailFromColumn(merodbquery::Session& session) {
    return utils::ExecUnlessColumnExists(session, kSchema.Table(), "ori_mail_to",
                                         kSchema.AddColumns(4) + kSchema.CreateIndices(4));
}

}  // namespace serverlog::db::emaillog
