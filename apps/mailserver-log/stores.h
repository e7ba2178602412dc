#pragma once

#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/record/adminlog/admin_log.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace serverlog::program {

/// The three stores: their name on the command line, their types and their files. kMainPath is the
/// long-term file, which holds the rows that rotation has moved there.
struct AdminStore {
    using DB = db::AdminLogDB;
    using Record = record::AdminLog;
    static constexpr char kName[] = "admin";
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/admin_log.db";
    static constexpr char kMainPath[] = "/var/spool/@PostCube-Server/aggr_log/admin_log_main.db";
};

struct MailStore {
    using DB = db::MailLogDB;
    using Record = record::MailLog;
    static constexpr char kName[] = "mail";
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log.db";
    static constexpr char kMainPath[] =
        "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log_main.db";
};

struct SecurityStore {
    using DB = db::SecurityLogDB;
    using Record = record::SecurityLog;
    static constexpr char kName[] = "security";
    static constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_security_log.db";
    static constexpr char kMainPath[] =
        "/var/spool/@PostCube-Server/aggr_log/aggr_security_log_main.db";
};

/// The folder of the stores, with a slash at its end.
inline constexpr char kStoreFolder[] = "/var/spool/@PostCube-Server/aggr_log/";

/// Calls `visit` with an object of the store's type. Throws std::invalid_argument for an unknown
/// name.
template <class Visit>
decltype(auto) VisitStore(const std::string& name, Visit&& visit) {
    if (name == AdminStore::kName) {
        return visit(AdminStore());
    }
    if (name == MailStore::kName) {
        return visit(MailStore());
    }
    if (name == SecurityStore::kName) {
        return visit(SecurityStore());
    }
    throw std::invalid_argument("no store is called " + name);
}

}  // namespace serverlog::program
