#include "support/statistics.h"

#include <fcntl.h>
#include <mailserver/file_lock.h>
#include <mailserver/mail_conf.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "old_log/create_scripts.h"
#include "support/fake_clock.h"
#include "support/json_value.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/text_file.h"
#include "utils/strings.h"

namespace test {

namespace {

constexpr char kModel[] = PROJECT_SOURCE_DIRECTORY "/tests/old_log/statistics_model.py";

const char* const kTrafficTables[] = {"log_statistic_hour", "log_statistic_day",
                                      "log_statistic_week", "log_statistic_month",
                                      "log_statistic_top5", "log_statistic_daily_usage"};
const char* const kThreatTables[] = {"threat_overview_hour", "threat_overview_day",
                                     "blocked_address_hour", "blocked_address_day"};

void MakeLog(const std::string& path, const std::string& script) {
    if (!std::filesystem::exists(path)) {
        RunOnFile(path, script);
    }
}

void AppendRows(const std::string& file, const char* table, std::vector<std::string>& rows) {
    if (!std::filesystem::exists(kSpool + file)) {
        return;
    }
    for (const std::string& row : RunOnFile(kSpool + file, "SELECT * FROM " + std::string(table))) {
        rows.push_back(std::string(table) + "|" + row);
    }
}

}  // namespace

void BeginAt(long time) {
    if (mailConfSet(kLastCountTime, std::to_string(time), false, 0) != 0) {
        throw std::runtime_error("cannot set the time up to which was counted");
    }
    FakeClock::Set(time);
}

void SetDomains(const std::vector<std::string>& names) {
    Json::Value file;
    file["domains"] = Json::arrayValue;
    for (const std::string& name : names) {
        Json::Value& domain = file["domains"].append(Json::Value());
        domain["domain_id"] = 1;
        domain["name"] = name;
    }
    WriteTextFile(kDomainFile, TextOf(file));
}

void AddEvents(const std::string& name, const std::vector<MailEvent>& events) {
    MakeLog(kSpool + name, statistic_log::MailLogScript());
    std::ostringstream sql;
    sql << "BEGIN;";
    for (const MailEvent& event : events) {
        sql << "INSERT INTO mail_log_table(date, status, mail_from, mail_to) VALUES(" << event.date
            << "," << event.status << ",'" << event.from << "','" << event.to << "');";
    }
    RunOnFile(kSpool + name, sql.str() + "COMMIT;");
}

void AddEvents(const std::string& name, const std::vector<SecurityEvent>& events) {
    MakeLog(kSpool + name, statistic_log::SecurityLogScript());
    std::ostringstream sql;
    sql << "BEGIN;";
    for (const SecurityEvent& event : events) {
        sql << "INSERT INTO security_log_table(date, type, src, sender, recipient) VALUES("
            << event.date << ",'" << event.type << "','" << event.src << "','" << event.sender
            << "','" << event.recipient << "');";
    }
    RunOnFile(kSpool + name, sql.str() + "COMMIT;");
}

void Rotate(const std::string& log, long before) {
    const std::string current = kSpool + "aggr_" + log + "_log.db";
    const std::string long_term = kSpool + "aggr_" + log + "_log_main.db";
    const std::string time = std::to_string(before);
    std::filesystem::copy(current, long_term);
    RunOnFile(long_term, "DELETE FROM " + log + "_log_table WHERE date >= " + time);
    RunOnFile(current, "DELETE FROM " + log + "_log_table WHERE date < " + time);
}

void SetChangeTime(const std::string& path, long time) {
    const timespec times[] = {{time, 0}, {time, 0}};
    if (utimensat(AT_FDCWD, path.c_str(), times, 0) != 0) {
        throw std::runtime_error("cannot set the time of " + path);
    }
}

std::vector<std::string> StatisticRows() {
    std::vector<std::string> rows;
    for (const char* table : kTrafficTables) {
        AppendRows("log_statistic.db", table, rows);
    }
    for (const char* table : kThreatTables) {
        AppendRows("security_statistic.db", table, rows);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

std::vector<std::string> ExpectedRows(const std::string& zone, long last,
                                      const std::vector<std::string>& domains,
                                      const std::vector<long>& cycles) {
    std::ostringstream command;
    command << "python3 -IS '" << kModel << "' '" << kSpool << "' '" << zone << "' " << last << " '"
            << serverlog::utils::Join(domains, ",") << "'";
    for (const long cycle : cycles) {
        command << " " << cycle;
    }
    FILE* const output = popen(command.str().c_str(), "r");
    std::string text;
    char buffer[4096];
    for (std::size_t size; (size = fread(buffer, 1, sizeof buffer, output)) > 0;) {
        text.append(buffer, size);
    }
    if (pclose(output) != 0 || text.empty()) {
        throw std::runtime_error("the model failed: " + command.str());
    }
    std::vector<std::string> rows = serverlog::utils::Split(text, std::string("\n"));
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool IsFree(const std::string& lock_path) {
    int lock = -1;
    return pscFileLockByFile(lock_path.c_str(), 0, &lock) && pscFileUnlockByFile(lock);
}

}  // namespace test
