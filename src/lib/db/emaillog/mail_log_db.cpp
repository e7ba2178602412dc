#include <mailserver-log/db/emaillog/mail_log_db.h>

#include "db/emaillog/mail_log_schema.h"
#include "db/emaillog/mail_log_upgrade.h"
#include "utils/strings.h"

namespace serverlog::db {

MailLogDB::MailLogDB(merodbquery::Session& session) : BaseDB(session), table_(GetSession()) {}

MailLogDB::MailLogDB(const MailLogDB& other) : BaseDB(other), table_(GetSession()) {}

std::vector<std::function<bool(merodbquery::Session&)>> MailLogDB::UpgradeFuncs() {
    return {emaillog::V0_NOOP, emaillog::V1_CreateDataBase, emaillog::V2_CreateIndex,
            emaillog::V3_InsertSubjectColumn, emaillog::V4_InsertOriMailFromColumn};
}

std::string MailLogDB::DbLock() const {
    return "/var/lock/postcube_server/mail_log_db.lock";
}

std::string MailLogDB::RotateTable() const {
    return emaillog::kSchema.Table();
}

std::string MailLogDB::RotateFields() const {
    return utils::Join(record::MailLog().GetInsertFields(), ", ");
}

std::string MailLogDB::CreateSchema() const {
    return emaillog::kSchema.CreateNewest();
}

MailLogTable& MailLogDB::MainTable() {
    return table_;
}

}  // namespace serverlog::db
