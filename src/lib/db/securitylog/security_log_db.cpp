#include <mailserver-log/db/securitylog/security_log_db.h>

#include "db/securitylog/security_log_schema.h"
#include "db/securitylog/security_log_upgrade.h"
#include "utils/strings.h"

namespace serverlog::db {

SecurityLogDB::SecurityLogDB(merodbquery::Session& session)
    : BaseDB(session), table_(GetSession()) {}

SecurityLogDB::SecurityLogDB(const SecurityLogDB& other) : BaseDB(other), table_(GetSession()) {}

std::vector<std::function<bool(merodbquery::Session&)>> SecurityLogDB::UpgradeFuncs() {
    return {securitylog::V0_NOOP, securitylog::V1_CreateDataBase, securitylog::V2_CreateIndex,
            securitylog::V3_InsertSenderRecipientColumn, securitylog::V4_InsertSubjectColumn};
}

std::string SecurityLogDB::DbLock() const {
    return "/var/lock/postcube_server/security_log_db.lock";
}

std::string SecurityLogDB::RotateTable() const {
    return securitylog::kSchema.Table();
}

std::string SecurityLogDB::RotateFields() const {
    return utils::Join(record::SecurityLog().GetInsertFields(), ", ");
}

std::string SecurityLogDB::CreateSchema() const {
    return securitylog::kSchema.CreateNewest();
}

SecurityLogTable& SecurityLogDB::MainTable() {
    return table_;
}

}  // namespace serverlog::db
