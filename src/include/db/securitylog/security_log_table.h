#pragma once

#include <mailserver-log/db/crea_table.h>
#include <mailserver-log/db/lis_table.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/securitylog/security_log.h>
#include <merodbquery/session.h>

namespace serverlog::db {

extern template class LisTable<record::SecurityLog>;
extern template class CreaTable<record::SecurityLog>;

/// The table security_log_table of a session: lists and inserts its rows.
class MAILSERVER_LOG_EXPORT SecurityLogTable : public LisTable<record::SecurityLog>,
                                               public CreaTable<record::SecurityLog> {
 public:
    /// @param session  must outlive this object
    explicit SecurityLogTable(merodbquery::Session& session);
};

}  // namespace serverlog::db
