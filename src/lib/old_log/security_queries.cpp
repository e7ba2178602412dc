#include "old_log/security_queries.h"

#include "old_log/sql_text.h"

namespace statistic_log {

namespace {

// The start of the local day that a column or a number lies in, as SQLite tells it.
constexpr char kDayStart[] = "strftime('%%s', %s, 'unixepoch', 'localtime', 'start of day', 'utc')";

std::string DayStartOf(const std::string& time) {
    return SqlText(kDayStart, time.c_str());
}

}  // namespace

std::string HourCountsQuery(const std::string& schema, const std::string& column,
                            std::int64_t since, const std::string& condition,
                            const std::string& sender, const std::string& recipient) {
    return "SELECT strftime('%s', strftime('%Y-%m-%d %H:00:00', date, 'unixepoch')) AS time, " +
           column + ", COUNT(*) AS cnt FROM " + schema +
           "security_log_table WHERE strftime('%s', strftime('%Y-%m-%d %H:00:00', " +
           std::to_string(since) + ", 'unixepoch')) <= date" + condition + " AND " + sender +
           " AND " + recipient + " GROUP BY time, " + column;
}

std::string SaveThreatsCommand(const MailClass& mail_class, const std::string& counts) {
    return SqlText(
        "INSERT OR REPLACE INTO main.threat_overview_hour(time, mail_type, threat_type, count) "
        "SELECT time, '%s', type, SUM(cnt) FROM (%s) GROUP BY time, type;",
        mail_class.name, counts.c_str());
}

std::string SaveAddressesCommand(const MailClass& mail_class, const std::string& column,
                                 const std::string& counts) {
    return SqlText(
        "INSERT OR REPLACE INTO main.blocked_address_hour(time, mail_type, address_type, address, "
        "count) SELECT time, '%s', '%s', LOWER(%s), SUM(cnt) FROM (%s) GROUP BY time, LOWER(%s);",
        mail_class.name, column.c_str(), column.c_str(), counts.c_str(), column.c_str());
}

std::string OriginsQuery(const std::string& counts) {
    return "SELECT time, src, SUM(cnt) AS count FROM (" + counts + ") GROUP BY time, src;";
}

std::string SumUpThreatsCommand(std::int64_t since) {
    return "INSERT OR REPLACE INTO main.threat_overview_day(time, mail_type, threat_type, count) "
           "SELECT " +
           DayStartOf("time") +
           " AS daytime, mail_type, threat_type, SUM(count) FROM main.threat_overview_hour WHERE " +
           DayStartOf(std::to_string(since)) + " <= time GROUP BY daytime, mail_type, threat_type;";
}

std::string SumUpAddressesCommand(std::int64_t since) {
    return "INSERT OR REPLACE INTO main.blocked_address_day(time, mail_type, address_type, "
           "address, count) SELECT " +
           DayStartOf("time") +
           " as daytime, mail_type, address_type, address, SUM(count) FROM "
           "main.blocked_address_hour WHERE " +
           DayStartOf(std::to_string(since)) +
           " <= time GROUP BY daytime, mail_type, address_type, address;";
}

std::string SumUpOriginsCommand(std::int64_t since) {
    return "INSERT OR REPLACE INTO main.threat_origin_day (time, country_code, country, city, "
           "latitude, longitude, count) SELECT " +
           DayStartOf("time") +
           " AS daytime, country_code,country, city, latitude, longitude, SUM(count) FROM "
           "main.threat_origin_hour WHERE " +
           DayStartOf(std::to_string(since)) + " <= time GROUP BY daytime, latitude, longitude;";
}

// The inner date is in UTC and the outer one reads it as local, on purpose: the limit lies as far
// from midnight as the time zone from UTC.
std::string RemoveOldCommand(const char* table) {
    return SqlText(
        "DELETE FROM %s WHERE time < strftime('%%s', strftime('%%Y-%%m-%%d', 'now', '-29 day'), "
        "'utc')",
        table);
}

}  // namespace statistic_log
