#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/old_log/statistic_log.h>
#include <mailserver/db_handler.h>

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

struct GeoIPTag;        // GeoIP
struct GeoIPRecordTag;  // GeoIPRecord

namespace statistic_log {
struct MailClass;
}

/// The statistics of the mail and the security log: counts and top lists of each hour, day, week
/// and month in `log_statistic.db`, threats in `security_statistic.db`.
///
/// One object lives as long as its daemon and goes through cycle after cycle. Nothing throws (but
/// std::bad_alloc): functions give a negative number and write an error line, the cycle's work ends
/// there, and the next cycle takes it up again. What stands at a function below is what it does
/// beside that. Connections are closed and locks given back on every way out of a public function
/// that says nothing else.
///
/// One thread uses it, with the right to become root: it does so around what needs that, for the
/// whole process.
class MAILSERVER_LOG_EXPORT MailLogger {
 public:
    /// Prepares the folder of the stores and takes up where `log_last_count_time` says.
    ///
    /// @param period  length of a cycle in seconds, above 0
    ///
    /// error() tells -1 when the folder cannot be handed to its user; every cycle then fails.
    explicit MailLogger(int period);

    /// Closes everything and gives back what locks it holds.
    ~MailLogger();
    MailLogger(const MailLogger&) = delete;
    MailLogger& operator=(const MailLogger&) = delete;

    /// Runs one cycle: checkArchiveSetting, securityStatistic, statistic. Then sleeps until the
    /// next whole multiple of the period; a signal that is handled ends the sleep.
    void run();

    /// Which database the engine last turned to, and with it the one that the last error was in.
    /// Forgets it.
    ///
    /// @return 0 none, 1 mail log, 2 security log, 3 traffic statistic, 4 security statistic; -1
    ///         when the engine could not be set up, or HandleError has looked at an error
    int error();

    /// Looks at the error code of the database that error() would name, with HandleDBError.
    ///
    /// @return 0 when there was no error, else -1; error() tells the same from now on
    int HandleError();

    /// Writes an error line when a code is that of a corrupt file (11). Nothing is repaired.
    ///
    /// @return `code`
    int HandleDBError(DBHandler& handler, int code);

    /// Turns scheduled archiving off, and sends a notification, when its folder is gone and this
    /// machine may act for a healthy cluster.
    void checkArchiveSetting();

    // ---- Attaching ----

    /// Whether a long-term file can hold rows of the hour that is being counted: it exists, and
    /// `lastCountTime` is not behind the day on which it was last rewritten.
    bool shouldAttach(const std::string& path);

    /// Connects `handler` and attaches `log_statistic.db`, which is made if missing, as "statDB".
    ///
    /// @return 0 or -1; the connection stays open
    int attachStatisticDB(DBHandler* handler);

    /// Connects `handler` and attaches an existing file.
    ///
    /// @return 0 or -1; the connection stays open
    int attachDB(DBHandler* handler, const std::string& path, const std::string& alias);

    /// Detaches what attachDB attached.
    ///
    /// @return 0 or -1
    int detachDB(DBHandler* handler, const std::string& alias);

    /// Prepares a connection for a query on the log of a status: attaches the statistics as
    /// "statDB" for TimeScale::Day, and the log's long-term file as "DB0" if shouldAttach. In that
    /// case it takes the log's operation lock, which waits for a rotation that is under way.
    ///
    /// Call disconnectLogDB afterwards, also when this fails. One such query a log at a time.
    ///
    /// @param scale  Hour or Day
    /// @return 1 with "DB0", 0 without, -1
    int attachLogDBs(DBHandler* handler, MailStatus status, statistic_log::TimeScale scale);

    /// Closes the connection and gives the operation lock of that status's log back, if it is held.
    ///
    /// @param handler  may be null
    void disconnectLogDB(DBHandler* handler, MailStatus status);

    // ---- Traffic ----

    /// Counts the hours from `lastCountTime` to now, the last twelve of them at most, and saves
    /// `log_last_count_time`.
    void statistic();

    /// Counts the mails of one status in the hour that begins at `time`.
    ///
    /// @return the count, or -1
    int getLogNumPerHour(const long& time, MailStatus status);

    /// Adds to all twenty top lists of `count`, behind what they hold, and rewrites the daily usage
    /// of the day that `time` lies in.
    ///
    /// @return 0 or -1
    int getTop5Lists(const long& time, statistic_log::StatisticCount& count);

    /// Adds five names to a list: those most frequent in the hour of `time`, then ("--", 0).
    ///
    /// @return 0 or -1
    int getTop5NumPerHour(const long& time, MailStatus status,
                          std::vector<std::pair<std::string, int>>& list);

    /// As getTop5NumPerHour for the day, week or month of `time`, from the daily usage.
    int getTop5NumOtherScale(const long& time, MailStatus status,
                             std::vector<std::pair<std::string, int>>& list,
                             statistic_log::TimeScale scale);

    /// Rewrites how often each name occurred on the day of `time`.
    ///
    /// @return 0 or -1
    int countDailyUsage(const long& time, MailStatus status);

    /// Adds the statements that save one scale of an hour's result: its counts, or for longer
    /// scales their sum over the finer table, and its top lists.
    ///
    /// @return 0; -1 for an unknown scale
    int composeInsertCmd(SQLCmd& commands, const long& time,
                         const statistic_log::StatisticCount& count,
                         statistic_log::TimeScale scale);

    /// Removes what is too old, then saves all four scales in one transaction.
    ///
    /// @return 0 or -1
    int saveStatistic(const long& time, const statistic_log::StatisticCount& count);

    /// Removes what is too old, in the hour that begins a day; does nothing in all others.
    ///
    /// @return 0 or -1
    int removeOldLog();

    // ---- Security ----

    /// Counts the security log anew from the hour of `lastCountTime` on and removes what is too
    /// old.
    ///
    /// @return 0 or -1
    int securityStatistic();

    /// The statements that remove what is older than 29 days.
    SQLCmd genSQLCmdToRemoveSecurityStatisticOldLog();

    /// The statements that count threats by their type.
    ///
    /// @param alias     schema name of the attached log
    /// @param attached  how many long-term files are attached, as "DB0", "DB1", …
    /// @param domains   the server's own domains; free of quotes
    SQLCmd genSQLCmdForThreatOverview(const std::string& alias, int attached,
                                      const std::list<std::string>& domains);

    /// The statements that count senders and recipients; parameters as above.
    SQLCmd genSQLCmdForBlockedAddress(const std::string& alias, int attached,
                                      const std::list<std::string>& domains);

    /// Counts the places on the map that rejected mail came from; parameters as above. Works on the
    /// open connection of the security statistics.
    ///
    /// @return 0 or -1; what was saved before a failure stays
    int execQueriesForThreatOrigin(const std::string& alias, int attached,
                                   const std::list<std::string>& domains);

    /// A condition in SQL: whether the address in a column belongs to one of the domains.
    ///
    /// @param field   name of the column
    /// @param inside  false turns the condition round
    /// @return the condition with a blank at either end; always false when there are no domains
    std::string genDomainFilter(const std::string& field, bool inside,
                                const std::list<std::string>& domains);

    /// A query over several files of one shape.
    ///
    /// @param query     the query on the first file
    /// @param attached  how many further files there are
    /// @param from      what names the first file in `query`; its first occurrence is replaced
    /// @param to        printf format of what stands there for the further ones, with their number
    std::string genUnionQueryForAttachedDB(const std::string& query, int attached,
                                           const std::string& from, const std::string& to);

    /// Looks up where an address lies; opens the data on first use.
    ///
    /// @param address  IPv4, or IPv6, told by its colon
    /// @return the record, which the caller frees with GeoIPRecord_delete; null when the address is
    ///         unknown or the data cannot be opened
    GeoIPRecordTag* GeoIPRecordGet(const char* address);

    /// Closes the data, so that a newer file is found next time.
    void GeoIPFree();

 private:
    struct DeleteGeoIP {
        void operator()(GeoIPTag* data) const;
    };
    using GeoIPPointer = std::unique_ptr<GeoIPTag, DeleteGeoIP>;

    // Each opens, attaches and locks what a query needs, and gives it back at its end.
    class LogAccess;
    class SecurityAccess;

    void readLastCountTime();
    DBHandler* handlerOf(int source) const;
    int connectDB(DBHandler* handler);
    int execRaised(DBHandler& handler, const SQLCmd& commands, bool in_transaction);
    std::int32_t& lockFd(MailStatus status);
    void countHours(long first, long hours);
    int writeStatistic(const SQLCmd& commands);
    int countSecurityLog(int attached, const std::list<std::string>& domains);
    std::string hourCountsOf(const statistic_log::MailClass& mail_class, const std::string& column,
                             const std::string& condition, const std::string& alias, int attached,
                             const std::list<std::string>& domains);
    int saveThreatOrigins(const std::string& query);
    int writeThreatOrigins(const SQLCmd& commands);

    std::int32_t period;
    std::int64_t lastCountTime;  // the hour up to which counting has got
    std::int32_t errorSource;
    std::int32_t mailLockFd;
    std::int32_t securityLockFd;
    std::unique_ptr<DBHandler> mailLogDb;
    std::unique_ptr<DBHandler> securityLogDb;
    std::unique_ptr<DBHandler> securityStatisticDb;
    std::unique_ptr<DBHandler> statisticDb;
    GeoIPPointer geoIp;
    GeoIPPointer geoIpV6;
};
