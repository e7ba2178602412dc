#include "old_log/traffic_queries.h"

#include <cstring>

#include "old_log/log_files.h"
#include "old_log/sql_text.h"

namespace statistic_log {

namespace {

std::string EventsOf(const StatusRow& status) {
    return status.status == MailStatus::Rejected
               ? "type='reject'"
               : SqlText("status=%d", static_cast<int>(status.status));
}

std::string CountOfFile(const char* schema, const StatusRow& status, const Window& window) {
    // The blanks differ by log on purpose: the statements stay as they have always read.
    const char* const format =
        status.status == MailStatus::Rejected
            ? "SELECT COUNT(*) as cnt FROM %s.%q WHERE %s AND date >= %ld AND date < %ld"
            : "SELECT COUNT(*) as cnt FROM %s.%q WHERE %s AND date>=%ld AND date<%ld";
    return SqlText(format, schema, LogFileOf(status.status).table, EventsOf(status).c_str(),
                   window.from, window.until);
}

std::string NamesOfFile(const char* schema, const StatusRow& status, const Window& window) {
    return SqlText(
        "SELECT %s, COUNT(*) as cnt FROM %s.%q WHERE %s AND date>=%ld AND date<%ld GROUP BY %s",
        status.key, schema, LogFileOf(status.status).table, EventsOf(status).c_str(), window.from,
        window.until, status.key);
}

std::string NamesOfFiles(const StatusRow& status, const Window& window, bool with_long_term) {
    const std::string long_term =
        with_long_term ? NamesOfFile("DB0", status, window) + " UNION ALL " : "";
    return long_term + NamesOfFile("main", status, window);
}

}  // namespace

// A day is always 86,400 s from its start on, on purpose: on a day of 25 hours the last one is left
// out of the sums, on one of 23 hours the window reaches an hour into the next.
Window PeriodOf(const ScaleRow& scale, long time) {
    const long start = getRoundTime(time, scale.interval);
    if (scale.scale == TimeScale::Month) {
        return {start, getNextMonthStartTime(start)};
    }
    return {start, start + static_cast<long>(scale.interval)};
}

std::string CountQuery(const StatusRow& status, const Window& window, bool with_long_term) {
    const std::string current = CountOfFile("main", status, window);
    if (!with_long_term) {
        return current + ";";
    }
    return "SELECT SUM(cnt) FROM (" + current + " UNION ALL " + CountOfFile("DB0", status, window) +
           ");";
}

// Sorted by "cnt", the count in one file, and not by the sum, on purpose; and in no order among
// equals.
std::string TopQuery(const StatusRow& status, const Window& window, bool with_long_term) {
    return SqlText("SELECT %s, SUM(cnt) from (%s) GROUP by %s ORDER BY cnt DESC limit 5;",
                   status.key, NamesOfFiles(status, window, with_long_term).c_str(), status.key);
}

std::string DailyUsageCommand(const StatusRow& status, const Window& day, bool with_long_term) {
    return SqlText(
        "INSERT OR REPLACE INTO statDB.log_statistic_daily_usage(time, type, name, num) "
        "SELECT %ld, %d, %s, SUM(cnt) from (%s) GROUP by %s;",
        day.from, static_cast<int>(status.status), status.key,
        NamesOfFiles(status, day, with_long_term).c_str(), status.key);
}

std::string TopOfUsageQuery(const StatusRow& status, const Window& window) {
    return SqlText(
        "SELECT name, SUM(num) as cnt FROM %q WHERE type=%d AND time>=%ld AND time<%ld GROUP BY "
        "name ORDER BY cnt DESC limit 5;",
        kUsageTable, static_cast<int>(status.status), window.from, window.until);
}

std::string SaveHourCommand(const ScaleRow& scale, long time, const StatisticCount& count) {
    return SqlText(
        "INSERT OR REPLACE INTO '%q'(time, sentCnt, receiveCnt, bounceCnt, resentCnt, rejectCnt)"
        "VALUES('%ld', '%d', '%d', '%d', '%d', '%d');",
        scale.table, time, count.counts[0], count.counts[1], count.counts[2], count.counts[3],
        count.counts[4]);
}

std::string SumUpCommand(const ScaleRow& scale, const Window& period) {
    return SqlText(
        "INSERT OR REPLACE INTO '%q'(time, sentCnt, receiveCnt, bounceCnt, resentCnt, rejectCnt) "
        "SELECT %ld, SUM(sentCnt), SUM(receiveCnt), SUM(bounceCnt), SUM(resentCnt), "
        "SUM(rejectCnt) FROM '%q' WHERE %ld <= time AND %ld > time;",
        scale.table, period.from, scale.source, period.from, period.until);
}

std::string SaveTopCommand(const ScaleRow& scale, long time, const StatusRow& status,
                           std::size_t rank, const NameCounts::value_type& entry) {
    return SqlText(
        "INSERT OR REPLACE INTO '%q'(time, scale, type, rank, name, num) VALUES('%ld', '%d', "
        "'%d', '%d', '%q', '%d');",
        kTopTable, time, static_cast<int>(scale.scale), static_cast<int>(status.status),
        static_cast<int>(rank), entry.first.c_str(), entry.second);
}

std::string RemoveCommand(const RetentionRow& row, long now) {
    const long limit = now - row.seconds;
    if (std::strcmp(row.table, kTopTable) == 0) {
        return SqlText("DELETE FROM %q WHERE time < %ld AND scale = %d;", row.table, limit,
                       static_cast<int>(row.scale));
    }
    return SqlText("DELETE FROM %q WHERE time < %ld;", row.table, limit);
}

}  // namespace statistic_log
