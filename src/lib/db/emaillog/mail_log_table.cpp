#include <mailserver-log/db/emaillog/mail_log_table.h>

#include "db/crea_table_definitions.h"
#include "db/emaillog/mail_log_schema.h"
#include "db/lis_table_definitions.h"

namespace serverlog::db {

template class LisTable<record::MailLog>;
template class CreaTable<record::MailLog>;

MailLogTable::MailLogTable(merodbquery::Session& session)
    : LisTable(session, emaillog::kSchema.Table()), CreaTable(session, emaillog::kSchema.Table()) {}

}  // namespace serverlog::db
