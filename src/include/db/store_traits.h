#pragma once

#include <mailserver-log/record/adminlog/admin_log.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>

namespace serverlog::db {

class AdminLogDB;
class MailLogDB;
class SecurityLogDB;

/// The folder of the stores, with a slash at its end. It may be a link.
inline constexpr char kSpoolFolder[] = "/var/spool/@PostCube-Server/aggr_log/";

/// What belongs to a class of stores: the record of its rows as `Record`, the file of the store
/// that is in use as `kPath`, the long-term file beside it, which rotation moves rows to, as
/// `kMainPath`, the file of rows that wait for the archive as `kArchivePath`, and what rotation
/// works on, which is there at other times only when a rotation broke off, as `kWorkPath`. Whoever
/// replaces or moves one of these files, or relies on their staying in place, holds the lock file
/// `kOperationLock`.
template <class DB>
struct StoreTraits;

template <>
struct StoreTraits<AdminLogDB> {
    using Record = record::AdminLog;
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/admin_log.db";
    static constexpr char kMainPath[] = "/var/spool/@PostCube-Server/aggr_log/admin_log_main.db";
    static constexpr char kArchivePath[] =
        "/var/spool/@PostCube-Server/aggr_log/archive_admin_log.db";
    static constexpr char kWorkPath[] = "/var/spool/@PostCube-Server/aggr_log/tmp_admin_log.db";
    static constexpr char kOperationLock[] = "/var/lock/postcube_server/admin_log_op.lock";
};

template <>
struct StoreTraits<MailLogDB> {
    using Record = record::MailLog;
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log.db";
    static constexpr char kMainPath[] =
        "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log_main.db";
    static constexpr char kArchivePath[] =
        "/var/spool/@PostCube-Server/aggr_log/archive_aggr_mail_log.db";
    static constexpr char kWorkPath[] = "/var/spool/@PostCube-Server/aggr_log/tmp_aggr_mail_log.db";
    static constexpr char kOperationLock[] = "/var/lock/postcube_server/mail_log_db.file";
};

template <>
struct StoreTraits<SecurityLogDB> {
    using Record = record::SecurityLog;
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_security_log.db";
    static constexpr char kMainPath[] =
        "/var/spool/@PostCube-Server/aggr_log/aggr_security_log_main.db";
    static constexpr char kArchivePath[] =
        "/var/spool/@PostCube-Server/aggr_log/archive_aggr_security_log.db";
    static constexpr char kWorkPath[] =
        "/var/spool/@PostCube-Server/aggr_log/tmp_aggr_security_log.db";
    static constexpr char kOperationLock[] = "/var/lock/postcube_server/security_log_db.file";
};

}  // namespace serverlog::db
