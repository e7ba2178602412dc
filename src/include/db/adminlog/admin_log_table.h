#pragma once

#include <mailserver-log/db/crea_table.h>
#include <mailserver-log/db/lis_table.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/adminlog/admin_log.h>
#include <merodbquery/session.h>

namespace serverlog::db {

extern template class LisTable<record::AdminLog>;
extern template class CreaTable<record::AdminLog>;

/// The table admin_log of a session: lists and inserts its rows.
class MAILSERVER_LOG_EXPORT AdminLogTable : public LisTable<record::AdminLog>,
                                            public CreaTable<record::AdminLog> {
 public:
    /// @param session  must outlive this object
    explicit AdminLogTable(merodbquery::Session& session);
};

}  // namespace serverlog::db
