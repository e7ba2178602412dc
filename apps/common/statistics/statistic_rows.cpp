#include "statistics/statistic_rows.h"

#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/old_log/statistic_log.h>
#include <sqlite3.h>

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>

#include "stores/statement.h"

namespace serverlog::program {

namespace {

using statistic_log::TimeScale;
using Connection = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

constexpr int kPatienceMilliseconds = 60 * 1000;

// In "#", the name of the scale; ?1 and ?2 are the range.
constexpr char kCounts[] =
    "WITH counts AS (SELECT * FROM log_statistic_# WHERE time >= ?1 AND time < ?2) "
    "SELECT 'count', time, 'sent', '', sentCnt, 0 AS place FROM counts UNION ALL "
    "SELECT 'count', time, 'received', '', receiveCnt, 1 FROM counts UNION ALL "
    "SELECT 'count', time, 'bounced', '', bounceCnt, 2 FROM counts UNION ALL "
    "SELECT 'count', time, 'resent', '', resentCnt, 3 FROM counts UNION ALL "
    "SELECT 'count', time, 'rejected', '', rejectCnt, 4 FROM counts ORDER BY time, place";

// In "#", the number of the scale. Places that nobody holds have the number 0.
constexpr char kTop[] =
    "SELECT 'top', time, CASE type WHEN 0 THEN 'sent' WHEN 1 THEN 'received' WHEN 2 THEN 'bounced' "
    "WHEN 3 THEN 'resent' ELSE 'rejected' END, name, num FROM log_statistic_top5 "
    "WHERE scale = # AND num > 0 AND time >= ?1 AND time < ?2 ORDER BY time, type, rank";

constexpr char kThreats[] =
    "SELECT 'threat', time, mail_type, threat_type, count FROM threat_overview_# "
    "WHERE time >= ?1 AND time < ?2 ORDER BY time, mail_type, count DESC, threat_type";
constexpr char kAddresses[] =
    "SELECT 'address', time, mail_type || ' ' || address_type AS class, address, count "
    "FROM blocked_address_# WHERE time >= ?1 AND time < ?2 "
    "ORDER BY time, class, count DESC, address";
constexpr char kOrigins[] =
    "SELECT 'origin', time, country_code, country || CASE city WHEN '' THEN '' ELSE ', ' || city "
    "END, count FROM threat_origin_# WHERE time >= ?1 AND time < ?2 "
    "ORDER BY time, count DESC, country, city";

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
    throw Failure("cannot read " + path + ": " + reason +
                  "; check that you may read it and write to its folder, and look into the mail "
                  "log for what the statistics engine says of it");
}

Connection Open(const std::string& path) {
    if (!std::filesystem::exists(path)) {
        throw NoStatistics("there are no statistics yet, " + path +
                           " is missing; run mailserver-log statistics");
    }
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
    Connection connection(handle, sqlite3_close);
    if (code != SQLITE_OK) {
        Fail(path, sqlite3_errmsg(handle));
    }
    sqlite3_busy_timeout(handle, kPatienceMilliseconds);
    return connection;
}

std::string WithScale(std::string query, const std::string& scale) {
    for (std::size_t place; (place = query.find('#')) != std::string::npos;) {
        query.replace(place, 1, scale);
    }
    return query;
}

void Append(const Connection& connection, const std::string& path, const std::string& query,
            const TimeRange& range, std::vector<StatisticRow>& rows) {
    try {
        Statement statement(connection.get(), query);
        statement.Bind(1, range.from).Bind(2, range.to);
        while (statement.Next()) {
            rows.push_back({statement.Text(0), statement.Number(1), statement.Text(2),
                            statement.Text(3), statement.Number(4)});
        }
    } catch (const std::runtime_error& error) {
        Fail(path, error.what());
    }
}

}  // namespace

const std::vector<std::string>& TrafficScales() {
    static const std::vector<std::string> scales = {"hour", "day", "week", "month"};
    return scales;
}

const std::vector<std::string>& ThreatScales() {
    static const std::vector<std::string> scales = {"hour", "day"};
    return scales;
}

std::vector<StatisticRow> ReadTraffic(const std::string& scale, const TimeRange& range) {
    static const std::map<std::string, TimeScale> numbers = {{"hour", TimeScale::Hour},
                                                             {"day", TimeScale::Day},
                                                             {"week", TimeScale::Week},
                                                             {"month", TimeScale::Month}};
    const std::string path = std::string(db::kSpoolFolder) + "log_statistic.db";
    const Connection connection = Open(path);
    const std::string number = std::to_string(static_cast<int>(numbers.at(scale)));
    std::vector<StatisticRow> rows;
    Append(connection, path, WithScale(kCounts, scale), range, rows);
    Append(connection, path, WithScale(kTop, number), range, rows);
    return rows;
}

std::vector<StatisticRow> ReadThreats(const std::string& scale, const TimeRange& range) {
    const std::string path = std::string(db::kSpoolFolder) + "security_statistic.db";
    const Connection connection = Open(path);
    std::vector<StatisticRow> rows;
    for (const char* query : {kThreats, kAddresses, kOrigins}) {
        Append(connection, path, WithScale(query, scale), range, rows);
    }
    return rows;
}

}  // namespace serverlog::program
