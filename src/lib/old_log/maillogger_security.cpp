#include <mailserver-log/old_log/maillogger.h>
#include <mailserver-log/utils/error_line.h>
#include <mailserver/domain_list.h>
#include <mlibc/error.h>

#include <cstdio>
#include <list>
#include <string>

#include "old_log/log_files.h"
#include "old_log/security_queries.h"
#include "utils/merosdk/critical_section.h"

using namespace statistic_log;

namespace {

constexpr char kLogAlias[] = "log";

}  // namespace

/// The connections of one run of securityStatistic, closed at its end, when the log's operation
/// lock is given back as well.
class MailLogger::SecurityAccess {
 public:
    explicit SecurityAccess(MailLogger& logger) : logger_(logger) {}
    ~SecurityAccess() {
        if (logger_.securityLogDb != nullptr && logger_.securityLogDb->disconnect() != 0) {
            logger_.errorSource = kSecurityLogSource;
            logger_.HandleError();
        }
        logger_.disconnectLogDB(logger_.securityStatisticDb.get(), MailStatus::Rejected);
    }
    SecurityAccess(const SecurityAccess&) = delete;
    SecurityAccess& operator=(const SecurityAccess&) = delete;

    /// 0 or -1. Connecting the log makes its file where it is missing.
    int Connect() {
        logger_.errorSource = kSecurityStatisticSource;
        if (logger_.connectDB(logger_.securityStatisticDb.get()) < 0) {
            return -1;
        }
        logger_.errorSource = kSecurityLogSource;
        return logger_.connectDB(logger_.securityLogDb.get());
    }

 private:
    MailLogger& logger_;
};

int MailLogger::securityStatistic() {
    std::list<std::string> domains;
    if (loadAllUtf8DomainList(domains) < 0) {
        SERVERLOG_ERROR_LINE("Failed to load domain list.[0x%04X %s:%d]", MLIBCErrGet(),
                             MLIBCErrorGetFile(), MLIBCErrorGetLine());
        HandleError();
        return -1;
    }
    SecurityAccess access(*this);
    if (access.Connect() < 0) {
        return -1;
    }
    const int attached =
        attachLogDBs(securityStatisticDb.get(), MailStatus::Rejected, TimeScale::Hour);
    if (attached < 0) {
        SERVERLOG_ERROR_LINE("Failed to attachLogDBs.[0x%04X %s:%d]", MLIBCErrGet(),
                             MLIBCErrorGetFile(), MLIBCErrorGetLine());
        return -1;
    }
    if (attachDB(securityStatisticDb.get(), kSecurityLog.path, kLogAlias) < 0) {
        SERVERLOG_ERROR_LINE("Failed to attach security log db.[0x%04X %s:%d]", MLIBCErrGet(),
                             MLIBCErrorGetFile(), MLIBCErrorGetLine());
        return -1;
    }
    const int result = countSecurityLog(attached, domains);
    if (detachDB(securityStatisticDb.get(), kLogAlias) < 0) {
        SERVERLOG_ERROR_LINE("Failed to detach security log db.");
        errorSource = kSecurityStatisticSource;
        HandleError();
    }
    return result;
}

int MailLogger::countSecurityLog(int attached, const std::list<std::string>& domains) {
    SQLCmd commands = genSQLCmdToRemoveSecurityStatisticOldLog();
    commands += genSQLCmdForThreatOverview(kLogAlias, attached, domains);
    commands += genSQLCmdForBlockedAddress(kLogAlias, attached, domains);
    if (execRaised(*securityStatisticDb, commands, false) != 0) {
        errorSource = kSecurityStatisticSource;
        HandleError();
        return -1;
    }
    if (execQueriesForThreatOrigin(kLogAlias, attached, domains) < 0) {
        SERVERLOG_ERROR_LINE("Failed to execQueriesForThreatOrigin");
        return -1;
    }
    return 0;
}

SQLCmd MailLogger::genSQLCmdToRemoveSecurityStatisticOldLog() {
    SQLCmd commands;
    for (const Measure& measure : kMeasures) {
        commands += RemoveOldCommand(measure.hour_table).c_str();
        commands += RemoveOldCommand(measure.day_table).c_str();
    }
    return commands;
}

SQLCmd MailLogger::genSQLCmdForThreatOverview(const std::string& alias, int attached,
                                              const std::list<std::string>& domains) {
    SQLCmd commands;
    for (const MailClass& mail_class : {kInbound, kOutbound}) {
        const std::string counts = hourCountsOf(mail_class, "type", "", alias, attached, domains);
        commands += SaveThreatsCommand(mail_class, counts).c_str();
    }
    commands += SumUpThreatsCommand(lastCountTime).c_str();
    return commands;
}

SQLCmd MailLogger::genSQLCmdForBlockedAddress(const std::string& alias, int attached,
                                              const std::list<std::string>& domains) {
    // That spam and bad content count against strangers and recipients but not against the server's
    // own senders is on purpose.
    constexpr char kNotOfContent[] = " AND type != 'spam' AND type != 'content'";
    const struct {
        const MailClass& mail_class;
        const char* column;
        const char* condition;
    } rows[] = {
        {kInbound, "sender", ""},
        {kInbound, "recipient", ""},
        {kOutbound, "sender", kNotOfContent},
        {kOutbound, "recipient", ""},
    };
    SQLCmd commands;
    for (const auto& row : rows) {
        const std::string counts =
            hourCountsOf(row.mail_class, row.column, row.condition, alias, attached, domains);
        commands += SaveAddressesCommand(row.mail_class, row.column, counts).c_str();
    }
    commands += SumUpAddressesCommand(lastCountTime).c_str();
    return commands;
}

std::string MailLogger::hourCountsOf(const MailClass& mail_class, const std::string& column,
                                     const std::string& condition, const std::string& alias,
                                     int attached, const std::list<std::string>& domains) {
    const std::string schema = alias + ".";
    const std::string query =
        HourCountsQuery(schema, column, lastCountTime, condition,
                        genDomainFilter("sender", mail_class.sender_inside, domains),
                        genDomainFilter("recipient", mail_class.recipient_inside, domains));
    return genUnionQueryForAttachedDB(query, attached, schema, "DB%d.");
}

std::string MailLogger::genDomainFilter(const std::string& field, bool inside,
                                        const std::list<std::string>& domains) {
    if (domains.empty()) {
        return " (0) ";  // for both senses, on purpose: without domains nothing is counted
    }
    const std::string test = field + (inside ? " LIKE '%@" : " NOT LIKE '%@");
    std::string terms;
    for (const std::string& domain : domains) {
        if (!terms.empty()) {
            terms += inside ? " OR " : " AND ";
        }
        terms += test + domain + "'";
    }
    return " (" + terms + ") ";
}

std::string MailLogger::genUnionQueryForAttachedDB(const std::string& query, int attached,
                                                   const std::string& from, const std::string& to) {
    std::string text = query;
    for (int i = 0; i < attached; ++i) {
        char schema[64];
        std::snprintf(schema, sizeof schema, to.c_str(), i);
        std::string other = query;
        const std::size_t place = other.find(from);
        if (place != std::string::npos) {
            other.replace(place, from.size(), schema);
        }
        text += " UNION ALL " + other;
    }
    return text;
}
