#include <mailserver-log/db/adminlog/admin_log_db.h>

#include "db/adminlog/admin_log_schema.h"
#include "db/adminlog/admin_log_upgrade.h"
#include "utils/strings.h"

namespace serverlog::db {

AdminLogDB::AdminLogDB(merodbquery::Session& session) : BaseDB(session), table_(GetSession()) {}

AdminLogDB::AdminLogDB(const AdminLogDB& other) : BaseDB(other), table_(GetSession()) {}

std::vector<std::function<bool(merodbquery::Session&)>> AdminLogDB::UpgradeFuncs() {
    return {adminlog::V0_NOOP, adminlog::V1_CreateDataBase, adminlog::V2_UpdateWebapiRecord,
            adminlog::V3_DropWebapiTable, adminlog::V4_DropIdColumn};
}

std::string AdminLogDB::DbLock() const {
    return "/var/lock/postcube_server/admin_log_db.lock";
}

std::string AdminLogDB::RotateTable() const {
    return adminlog::kSchema.Table();
}

std::string AdminLogDB::RotateFields() const {
    return utils::Join(record::AdminLog().GetInsertFields(), ", ");
}

std::string AdminLogDB::CreateSchema() const {
    return adminlog::kSchema.CreateNewest();
}

AdminLogTable& AdminLogDB::MainTable() {
    return table_;
}

}  // namespace serverlog::db
