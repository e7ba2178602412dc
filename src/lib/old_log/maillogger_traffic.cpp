#include <mailserver-log/old_log/maillogger.h>
#include <mailserver-log/utils/error_line.h>
#include <mailserver/mail_conf.h>
#include <mailserver/round_time.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <string>

#include "old_log/log_files.h"
#include "old_log/row_query.h"
#include "old_log/traffic_queries.h"
#include "old_log/traffic_tables.h"
#include "utils/merosdk/critical_section.h"

using namespace statistic_log;
using serverlog::utils::CriticalSection;

namespace {

constexpr long kHour = 3600;
constexpr long kMostHours = 12;
constexpr std::size_t kPlaces = 5;
const NameCounts::value_type kNobody = {"--", 0};

const StatusRow& RowOf(MailStatus status) {
    return kStatuses[static_cast<std::size_t>(status)];
}

const ScaleRow* RowOf(TimeScale scale) {
    const auto* row = std::find_if(std::begin(kScales), std::end(kScales),
                                   [&](const ScaleRow& other) { return other.scale == scale; });
    return row == std::end(kScales) ? nullptr : row;
}

// Adds five entries to the list, also behind those of an earlier call.
int ReadTop(RowQuery& query, NameCounts& list) {
    std::size_t places = 0;
    int more = 0;
    while ((more = query.Next()) > 0) {
        list.emplace_back(query.Text(0), query.Number(1));
        ++places;
    }
    for (; places < kPlaces; ++places) {
        list.push_back(kNobody);
    }
    return more;
}

}  // namespace

/// The log of a status, connected for a query for as long as the object lives.
class MailLogger::LogAccess {
 public:
    LogAccess(MailLogger& logger, MailStatus status, TimeScale scale)
        : logger_(logger), status_(status) {
        logger_.errorSource = LogFileOf(status).source;
        handler_ = logger_.handlerOf(logger_.errorSource);
        attached_ = logger_.attachLogDBs(handler_, status, scale);
        if (attached_ >= 0 && logger_.connectDB(handler_) < 0) {
            attached_ = -1;
        }
    }
    ~LogAccess() { logger_.disconnectLogDB(handler_, status_); }
    LogAccess(const LogAccess&) = delete;
    LogAccess& operator=(const LogAccess&) = delete;

    bool failed() const { return attached_ < 0; }
    bool with_long_term() const { return attached_ > 0; }
    DBHandler& handler() const { return *handler_; }

 private:
    MailLogger& logger_;
    MailStatus status_;
    DBHandler* handler_;
    int attached_;
};

void MailLogger::statistic() {
    const long now = std::time(nullptr);
    long first = getRoundTime(lastCountTime, CountInterval::Hour);
    auto hours = static_cast<long>(std::ceil(static_cast<double>(now - first) / kHour));
    if (hours > kMostHours) {
        // What is older stays uncounted for good, on purpose: a cycle after a long rest must end.
        const long skipped = (hours - kMostHours) * kHour;
        lastCountTime += skipped;
        first += skipped;
        hours = kMostHours;
    }
    countHours(first, hours);
    // The present time also when counting failed, on purpose: within this process lastCountTime
    // makes up for it, after a restart nothing does.
    if (mailConfSet("log_last_count_time", std::to_string(now), false, 0) != 0) {
        SERVERLOG_ERROR_LINE("Fail to save last count time");
    }
}

void MailLogger::countHours(long first, long hours) {
    // One object for all hours on purpose: its top lists only grow, and those of the first hour are
    // saved for all. The next cycle counts the last hour again and so mends that one.
    StatisticCount count;
    for (long time = first; time < first + hours * kHour; time += kHour) {
        bool good = true;
        for (const StatusRow& row : kStatuses) {
            const int number = getLogNumPerHour(time, row.status);
            count.counts[row.index()] = number;
            good = good && number >= 0;
        }
        if (!good) {
            SERVERLOG_ERROR_LINE("Get total num Error");
            return;
        }
        if (getTop5Lists(time, count) < 0) {
            SERVERLOG_ERROR_LINE("Get top 5 list Error");
            return;
        }
        if (saveStatistic(time, count) < 0) {
            SERVERLOG_ERROR_LINE("Save statistics Error");
            return;
        }
        // The start of the hour and not its end: it is counted again until it is over.
        lastCountTime = time;
    }
}

int MailLogger::getLogNumPerHour(const long& time, MailStatus status) {
    const LogAccess log(*this, status, TimeScale::Hour);
    if (log.failed()) {
        return -1;
    }
    RowQuery query(*this, log.handler(),
                   CountQuery(RowOf(status), {time, time + kHour}, log.with_long_term()));
    return query.Next() > 0 ? query.Number(0) : -1;
}

int MailLogger::getTop5Lists(const long& time, StatisticCount& count) {
    for (const StatusRow& row : kStatuses) {
        if (getTop5NumPerHour(time, row.status, count.hour[row.index()]) < 0) {
            return -1;
        }
    }
    for (const StatusRow& row : kStatuses) {
        if (countDailyUsage(time, row.status) < 0) {
            return -1;
        }
    }
    for (const ScaleRow& scale : kScales) {
        if (scale.scale == TimeScale::Hour) {
            continue;
        }
        for (const StatusRow& row : kStatuses) {
            NameCounts& list = (count.*scale.lists)[row.index()];
            if (getTop5NumOtherScale(time, row.status, list, scale.scale) < 0) {
                return -1;
            }
        }
    }
    return 0;
}

int MailLogger::getTop5NumPerHour(const long& time, MailStatus status,
                                  std::vector<std::pair<std::string, int>>& list) {
    const LogAccess log(*this, status, TimeScale::Hour);
    if (log.failed()) {
        return -1;
    }
    const Window hour = PeriodOf(*RowOf(TimeScale::Hour), time);
    RowQuery query(*this, log.handler(), TopQuery(RowOf(status), hour, log.with_long_term()));
    return ReadTop(query, list);
}

int MailLogger::getTop5NumOtherScale(const long& time, MailStatus status,
                                     std::vector<std::pair<std::string, int>>& list,
                                     TimeScale scale) {
    const ScaleRow* const row = RowOf(scale);
    if (row == nullptr || row->source == nullptr) {
        return -1;
    }
    errorSource = kStatisticSource;
    if (connectDB(statisticDb.get()) < 0) {
        return -1;
    }
    int result = 0;
    {
        RowQuery query(*this, *statisticDb, TopOfUsageQuery(RowOf(status), PeriodOf(*row, time)));
        result = ReadTop(query, list);
    }
    statisticDb->disconnect();
    return result;
}

int MailLogger::countDailyUsage(const long& time, MailStatus status) {
    const LogAccess log(*this, status, TimeScale::Day);
    if (log.failed()) {
        return -1;
    }
    const Window day = PeriodOf(*RowOf(TimeScale::Day), time);
    const std::string command = DailyUsageCommand(RowOf(status), day, log.with_long_term());
    int code = 0;
    {
        const CriticalSection section(__FILE__, __LINE__);
        code = log.handler().ExecCmd(command);
    }
    return HandleDBError(log.handler(), code) == 0 ? 0 : -1;
}

int MailLogger::composeInsertCmd(SQLCmd& commands, const long& time, const StatisticCount& count,
                                 TimeScale scale) {
    const ScaleRow* const row = RowOf(scale);
    if (row == nullptr) {
        return -1;
    }
    const Window window = PeriodOf(*row, time);
    const std::string save = row->source == nullptr ? SaveHourCommand(*row, window.from, count)
                                                    : SumUpCommand(*row, window);
    commands += save.c_str();
    const ListsByStatus& lists = count.*(row->lists);
    for (std::size_t rank = 0; rank < kPlaces; ++rank) {
        for (const StatusRow& status : kStatuses) {
            const NameCounts& list = lists[status.index()];
            const auto& entry = rank < list.size() ? list[rank] : kNobody;
            commands += SaveTopCommand(*row, window.from, status, rank, entry).c_str();
        }
    }
    return 0;
}

int MailLogger::saveStatistic(const long& time, const StatisticCount& count) {
    if (removeOldLog() < 0) {
        return -1;
    }
    SQLCmd commands;
    for (const ScaleRow& row : kScales) {
        if (composeInsertCmd(commands, time, count, row.scale) < 0) {
            return -1;
        }
    }
    return writeStatistic(commands);
}

int MailLogger::removeOldLog() {
    const long now = std::time(nullptr);
    if (getRoundTime(now, CountInterval::Day) != getRoundTime(now, CountInterval::Hour)) {
        return 0;
    }
    SQLCmd commands;
    for (const RetentionRow& row : kRetention) {
        commands += RemoveCommand(row, now).c_str();
    }
    return writeStatistic(commands);
}

int MailLogger::writeStatistic(const SQLCmd& commands) {
    errorSource = kStatisticSource;
    if (connectDB(statisticDb.get()) < 0) {
        return -1;
    }
    const int code = execRaised(*statisticDb, commands, true);
    HandleDBError(*statisticDb, code);
    if (statisticDb->disconnect() != 0) {
        HandleError();
    }
    return code == 0 ? 0 : -1;
}
