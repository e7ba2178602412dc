#pragma once

#include <mailserver-log/record/adminlog/admin_log.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>

namespace serverlog::db {

class AdminLogDB;
class MailLogDB;
class SecurityLogDB;

/// What belongs to a class of stores: the record of its rows as `Record`, the file of the store
/// that is in use as `kPath`, and the long-term file beside it, which rotation moves rows to, as
/// `kMainPath`.
template <class DB>
struct StoreTraits;

template <>
struct StoreTraits<AdminLogDB> {
    using Record = record::AdminLog;
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/admin_log.db";
    static constexpr char kMainPath[] = "/var/spool/@PostCube-Server/aggr_log/admin_log_main.db";
};

template <>
struct StoreTraits<MailLogDB> {
    using Record = record::MailLog;
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log.db";
    static constexpr char kMainPath[] =
        "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log_main.db";
};

template <>
struct StoreTraits<SecurityLogDB> {
    using Record = record::SecurityLog;
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_security_log.db";
    static constexpr char kMainPath[] =
        "/var/spool/@PostCube-Server/aggr_log/aggr_security_log_main.db";
};

}  // namespace serverlog::db
