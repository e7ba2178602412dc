#include <mailserver-log/db/adminlog/admin_log_table.h>

#include "db/adminlog/admin_log_schema.h"
#include "db/crea_table_definitions.h"
#include "db/lis_table_definitions.h"

namespace serverlog::db {

template class LisTable<record::AdminLog>;
template class CreaTable<record::AdminLog>;

AdminLogTable::AdminLogTable(merodbquery::Session& session)
    : LisTable(session, adminlog::kSchema.Table()), CreaTable(session, adminlog::kSchema.Table()) {}

}  // namespace serverlog::db
