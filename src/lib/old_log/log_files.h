#pragma once

#include <mailserver-log/old_log/statistic_log.h>

#include <cstdint>

namespace statistic_log {

/// The folder of the logs and of the statistics, with a slash at its end.
inline constexpr char kFolder[] = "/var/spool/@PostCube-Server/aggr_log/";

inline constexpr char kMailLogPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log.db";
inline constexpr char kSecurityLogPath[] =
    "/var/spool/@PostCube-Server/aggr_log/aggr_security_log.db";
inline constexpr char kStatisticPath[] = "/var/spool/@PostCube-Server/aggr_log/log_statistic.db";
inline constexpr char kSecurityStatisticPath[] =
    "/var/spool/@PostCube-Server/aggr_log/security_statistic.db";

/// What MailLogger::error tells.
enum ErrorSource : std::int32_t {
    kUnknownSource = -1,
    kNoSource = 0,
    kMailLogSource = 1,
    kSecurityLogSource = 2,
    kStatisticSource = 3,
    kSecurityStatisticSource = 4,
};

/// A log as the statistics read it.
struct LogFile {
    ErrorSource source;
    const char* name;  ///< as error lines have it
    const char* table;
    const char* long_term_path;
    const char* lock_path;  ///< operation lock: a rotation holds it while it swaps files
};

inline constexpr LogFile kMailLog = {
    kMailLogSource,
    "mail log",
    "mail_log_table",
    "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log_main.db",
    "/var/lock/postcube_server/mail_log_db.file",
};

inline constexpr LogFile kSecurityLog = {
    kSecurityLogSource,
    "security log",
    "security_log_table",
    "/var/spool/@PostCube-Server/aggr_log/aggr_security_log_main.db",
    "/var/lock/postcube_server/security_log_db.file",
};

/// The log that holds the events of a status.
constexpr const LogFile& LogFileOf(MailStatus status) {
    return status == MailStatus::Rejected ? kSecurityLog : kMailLog;
}

}  // namespace statistic_log
