#pragma once

#include <mailserver-log/db/crea_table.h>
#include <mailserver-log/db/lis_table.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <merodbquery/session.h>

namespace serverlog::db {

extern template class LisTable<record::MailLog>;
extern template class CreaTable<record::MailLog>;

/// The table mail_log_table of a session: lists and inserts its rows.
class MAILSERVER_LOG_EXPORT MailLogTable : public LisTable<record::MailLog>,
                                           public CreaTable<record::MailLog> {
 public:
    /// @param session  must outlive this object
    explicit MailLogTable(merodbquery::Session& session);
};

}  // namespace serverlog::db
