#include "statistics/statistic_rows.h"

#include <mailserver-log/old_log/statistic_log.h>
#include <sqlite3.h>

#include <filesystem>
#include <map>
#include <memory>

#include "process/failure.h"
#include "stores/stores.h"

namespace serverlog::program {

namespace {

using statistic_log::TimeScale;
using Connection = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

constexpr int kPatienceMilliseconds = 60 * 1000;

// In "#", the name of the scale.
constexpr char kCounts[] =
    "SELECT 'count', time, 'sent', '', sentCnt, 0 AS place FROM log_statistic_# UNION ALL "
    "SELECT 'count', time, 'received', '', receiveCnt, 1 FROM log_statistic_# UNION ALL "
    "SELECT 'count', time, 'bounced', '', bounceCnt, 2 FROM log_statistic_# UNION ALL "
    "SELECT 'count', time, 'resent', '', resentCnt, 3 FROM log_statistic_# UNION ALL "
    "SELECT 'count', time, 'rejected', '', rejectCnt, 4 FROM log_statistic_# ORDER BY time, place";

// In "#", the number of the scale. Places that nobody holds have the number 0.
constexpr char kTop[] =
    "SELECT 'top', time, CASE type WHEN 0 THEN 'sent' WHEN 1 THEN 'received' WHEN 2 THEN 'bounced' "
    "WHEN 3 THEN 'resent' ELSE 'rejected' END, name, num FROM log_statistic_top5 "
    "WHERE scale = # AND num > 0 ORDER BY time, type, rank";

constexpr char kThreats[] =
    "SELECT 'threat', time, mail_type, threat_type, count FROM threat_overview_# "
    "ORDER BY time, mail_type, count DESC, threat_type";
constexpr char kAddresses[] =
    "SELECT 'address', time, mail_type || ' ' || address_type AS class, address, count "
    "FROM blocked_address_# ORDER BY time, class, count DESC, address";
constexpr char kOrigins[] =
    "SELECT 'origin', time, country_code, country || CASE city WHEN '' THEN '' ELSE ', ' || city "
    "END, count FROM threat_origin_# ORDER BY time, count DESC, country, city";

[[noreturn]] void Fail(const std::string& path, sqlite3* connection) {
    throw Failure("cannot read " + path + ": " + sqlite3_errmsg(connection) +
                  "; check that you may read it and write to its folder, and look into the mail "
                  "log for what the statistics engine says of it");
}

Connection Open(const std::string& path) {
    if (!std::filesystem::exists(path)) {
        throw Failure("there are no statistics yet, " + path +
                      " is missing; run mailserver-log statistics");
    }
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
    Connection connection(handle, sqlite3_close);
    if (code != SQLITE_OK) {
        Fail(path, handle);
    }
    sqlite3_busy_timeout(handle, kPatienceMilliseconds);
    return connection;
}

std::string Text(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text == nullptr ? "" : text;
}

std::string WithScale(std::string query, const std::string& scale) {
    for (std::size_t place; (place = query.find('#')) != std::string::npos;) {
        query.replace(place, 1, scale);
    }
    return query;
}

void Append(const Connection& connection, const std::string& path, const std::string& query,
            std::vector<StatisticRow>& rows) {
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(connection.get(), query.c_str(), -1, &prepared, nullptr);
    const Statement statement(prepared, sqlite3_finalize);
    int code = SQLITE_ERROR;
    while (statement != nullptr && (code = sqlite3_step(prepared)) == SQLITE_ROW) {
        rows.push_back({Text(prepared, 0), sqlite3_column_int64(prepared, 1), Text(prepared, 2),
                        Text(prepared, 3), sqlite3_column_int64(prepared, 4)});
    }
    if (code != SQLITE_DONE) {
        Fail(path, connection.get());
    }
}

}  // namespace

std::vector<StatisticRow> ReadTraffic(const std::string& scale) {
    static const std::map<std::string, TimeScale> numbers = {{"hour", TimeScale::Hour},
                                                             {"day", TimeScale::Day},
                                                             {"week", TimeScale::Week},
                                                             {"month", TimeScale::Month}};
    const std::string path = std::string(db::kSpoolFolder) + "log_statistic.db";
    const Connection connection = Open(path);
    const std::string number = std::to_string(static_cast<int>(numbers.at(scale)));
    std::vector<StatisticRow> rows;
    Append(connection, path, WithScale(kCounts, scale), rows);
    Append(connection, path, WithScale(kTop, number), rows);
    return rows;
}

std::vector<StatisticRow> ReadThreats(const std::string& scale) {
    const std::string path = std::string(db::kSpoolFolder) + "security_statistic.db";
    const Connection connection = Open(path);
    std::vector<StatisticRow> rows;
    for (const char* query : {kThreats, kAddresses, kOrigins}) {
        Append(connection, path, WithScale(query, scale), rows);
    }
    return rows;
}

}  // namespace serverlog::program
