#pragma once

#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/old_log/statistic_log.h>

#include <cstdint>

namespace statistic_log {

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
    const char* path;
    const char* long_term_path;
    const char* lock_path;  ///< operation lock: a rotation holds it while it swaps files
};

template <class DB>
constexpr LogFile MakeLogFile(ErrorSource source, const char* name, const char* table) {
    using Traits = serverlog::db::StoreTraits<DB>;
    return {source, name, table, Traits::kPath, Traits::kMainPath, Traits::kOperationLock};
}

inline constexpr LogFile kMailLog =
    MakeLogFile<serverlog::db::MailLogDB>(kMailLogSource, "mail log", "mail_log_table");
inline constexpr LogFile kSecurityLog = MakeLogFile<serverlog::db::SecurityLogDB>(
    kSecurityLogSource, "security log", "security_log_table");

/// The log that holds the events of a status.
constexpr const LogFile& LogFileOf(MailStatus status) {
    return status == MailStatus::Rejected ? kSecurityLog : kMailLog;
}

}  // namespace statistic_log
