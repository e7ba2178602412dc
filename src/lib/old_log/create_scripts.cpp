#include "old_log/create_scripts.h"

#include "db/emaillog/mail_log_schema.h"
#include "db/securitylog/security_log_schema.h"
#include "old_log/sql_text.h"
#include "utils/strings.h"

namespace statistic_log {

namespace {

namespace utils = serverlog::utils;
using serverlog::db::internal::kSchemaPlaceholder;
using serverlog::db::internal::TableSchema;

struct NamedTable {
    const char* name;
    const char* definitions;
};

struct NamedIndex {
    const char* name;
    const char* table;
    const char* column;
};

constexpr char kCounts[] =
    "time INTEGER PRIMARY KEY, sentCnt INTEGER, receiveCnt INTEGER, bounceCnt INTEGER, "
    "resentCnt INTEGER, rejectCnt INTEGER";

constexpr NamedTable kStatisticTables[] = {
    {"log_statistic_hour", kCounts},
    {"log_statistic_day", kCounts},
    {"log_statistic_week", kCounts},
    {"log_statistic_month", kCounts},
    {"log_statistic_top5",
     "time INTEGER, scale INTEGER, type INTEGER, rank INTEGER, name TEXT, num INTEGER, "
     "PRIMARY KEY (time, type, scale, rank)"},
    {"log_statistic_daily_usage",
     "time INTEGER, type INTEGER, name TEXT, num INTEGER, PRIMARY KEY (time, type, name)"},
};

constexpr NamedIndex kStatisticIndices[] = {
    {"hour_index", "log_statistic_hour", "time"},
    {"day_index", "log_statistic_day", "time"},
    {"week_index", "log_statistic_week", "time"},
    {"month_index", "log_statistic_month", "time"},
    {"top5_time_index", "log_statistic_top5", "time"},
    {"top5_scale_index", "log_statistic_top5", "scale"},
    {"top5_type_index", "log_statistic_top5", "type"},
    {"top5_rank_index", "log_statistic_top5", "rank"},
};

constexpr char kThreats[] =
    "time INTEGER, mail_type TEXT, threat_type TEXT, count INTEGER, "
    "PRIMARY KEY (time, mail_type, threat_type)";
constexpr char kAddresses[] =
    "time INTEGER, mail_type TEXT, address_type TEXT, address TEXT, count INTEGER, "
    "PRIMARY KEY(time, mail_type, address_type, address)";
constexpr char kOrigins[] =
    "time INTEGER, country_code TEXT, country TEXT, city TEXT, latitude REAL, longitude REAL, "
    "count INTEGER, PRIMARY KEY(time, latitude, longitude)";

constexpr NamedTable kSecurityStatisticTables[] = {
    {"threat_overview_hour", kThreats},   {"threat_overview_day", kThreats},
    {"blocked_address_hour", kAddresses}, {"blocked_address_day", kAddresses},
    {"threat_origin_hour", kOrigins},     {"threat_origin_day", kOrigins},
};

std::string InTransaction(const std::string& script) {
    return "BEGIN TRANSACTION;" + script + "COMMIT TRANSACTION;";
}

template <std::size_t Count>
std::string CreateTables(const NamedTable (&tables)[Count]) {
    std::string script;
    for (const NamedTable& table : tables) {
        script += SqlText("CREATE TABLE %s(%s);", table.name, table.definitions);
    }
    return script;
}

// What the stores themselves run is laid out in lines; the first versions wrote it in one.
std::string LogScript(const TableSchema& schema, int newest) {
    const std::string columns =
        utils::Trim(utils::Replace(schema.ColumnDefinitions(newest), "\n\t", " "));
    const std::string indices =
        utils::Replace(schema.CreateAllIndices(), std::string(kSchemaPlaceholder) + ".", "");
    return InTransaction("create table " + std::string(schema.Table()) + "(" + columns + ");" +
                         indices);
}

}  // namespace

std::string MailLogScript() {
    return LogScript(serverlog::db::emaillog::kSchema, 4);
}

std::string SecurityLogScript() {
    return LogScript(serverlog::db::securitylog::kSchema, 4);
}

std::string StatisticScript() {
    std::string script = CreateTables(kStatisticTables);
    for (const NamedIndex& index : kStatisticIndices) {
        script += SqlText("CREATE INDEX %s ON %s(%s);", index.name, index.table, index.column);
    }
    return InTransaction(script);
}

// Readers of this one do not wait while it is written.
std::string SecurityStatisticScript() {
    return "PRAGMA journal_mode = WAL;" + InTransaction(CreateTables(kSecurityStatisticTables));
}

}  // namespace statistic_log
