#include <mailserver-log/db/securitylog/security_log_table.h>

#include "db/crea_table_definitions.h"
#include "db/lis_table_definitions.h"
#include "db/securitylog/security_log_schema.h"

namespace serverlog::db {

template class LisTable<record::SecurityLog>;
template class CreaTable<record::SecurityLog>;

SecurityLogTable::SecurityLogTable(merodbquery::Session& session)
    : LisTable(session, securitylog::kSchema.Table()),
      CreaTable(session, securitylog::kSchema.Table()) {}

}  // namespace serverlog::db
