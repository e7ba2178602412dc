#pragma once

#include <mailserver-log/old_log/maillogger.h>

#include <string>
#include <vector>

#include "support/time_zone.h"

namespace test {

// For tests of the statistics engine.

/// The setting that holds the time up to which was counted.
inline constexpr char kLastCountTime[] = "log_last_count_time";

/// Sets the clock, and that all was counted up to then.
void BeginAt(long time);

inline constexpr char kDomainFile[] = "/var/packages/PostCube-Server/etc/domains.json";

/// Sets the server's own domains.
void SetDomains(const std::vector<std::string>& names);

/// A row of the mail log.
struct MailEvent {
    long date;
    int status;
    std::string from;
    std::string to;
};

/// A row of the security log.
struct SecurityEvent {
    long date;
    std::string type;
    std::string src;
    std::string sender;
    std::string recipient;
};

/// Adds rows to a log file, which is made if missing.
///
/// @param name  file in the folder of the stores
void AddEvents(const std::string& name, const std::vector<MailEvent>& events);
void AddEvents(const std::string& name, const std::vector<SecurityEvent>& events);

/// Makes a log's long-term file of its rows from before a time, which go from the current one.
///
/// @param log  "mail" or "security"
void Rotate(const std::string& log, long before);

/// Sets when a file was last changed, which tells the engine whether it matters.
void SetChangeTime(const std::string& path, long time);

/// All rows of the statistics but those of the threats' origin, "<table>|<cells>", sorted.
std::vector<std::string> StatisticRows();

/// What StatisticRows must give, computed from the logs by statistics_model.py.
///
/// @param last    up to which was counted before
/// @param cycles  when each cycle runs
std::vector<std::string> ExpectedRows(const std::string& zone, long last,
                                      const std::vector<std::string>& domains,
                                      const std::vector<long>& cycles);

/// Whether a lock file can be locked at once.
bool IsFree(const std::string& lock_path);

inline constexpr char kMailLock[] = "/var/lock/postcube_server/mail_log_db.file";
inline constexpr char kSecurityLock[] = "/var/lock/postcube_server/security_log_db.file";

}  // namespace test
