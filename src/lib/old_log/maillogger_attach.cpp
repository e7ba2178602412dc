#include <mailserver-log/old_log/maillogger.h>
#include <mailserver-log/utils/error_line.h>
#include <mailserver/file.h>
#include <mailserver/file_lock.h>
#include <mailserver/round_time.h>
#include <mlibc/error.h>
#include <mlibc/file.h>

#include "old_log/log_files.h"
#include "old_log/sql_text.h"
#include "utils/merosdk/critical_section.h"

using namespace statistic_log;
using serverlog::utils::CriticalSection;

namespace {

constexpr int kBusyTimeout = 60000;

}  // namespace

int MailLogger::connectDB(DBHandler* handler) {
    if (handler == nullptr) {
        return -1;
    }
    if (handler->connect() != 0) {
        HandleError();
        return -1;
    }
    handler->setBusyTimeout(kBusyTimeout);
    return 0;
}

int MailLogger::execRaised(DBHandler& handler, const SQLCmd& commands, bool in_transaction) {
    const CriticalSection section(__FILE__, __LINE__);
    return handler.exeCmds(commands, in_transaction);
}

bool MailLogger::shouldAttach(const std::string& path) {
    if (!MLIBCFileExist(path.c_str())) {
        return false;
    }
    const long changed = pcsGetFileMtime(path);
    return changed != 0 && lastCountTime <= getRoundTime(changed, CountInterval::Day);
}

int MailLogger::attachStatisticDB(DBHandler* handler) {
    errorSource = kStatisticSource;
    if (statisticDb != nullptr && statisticDb->connect() == 0) {
        statisticDb->disconnect();
    }
    SQLCmd attach;
    attach +=
        "ATTACH DATABASE \"/var/spool/@PostCube-Server/aggr_log/log_statistic.db\" AS statDB;";
    if (connectDB(handler) < 0 || execRaised(*handler, attach, false) != 0) {
        SERVERLOG_ERROR_LINE("Encounter error when attach statistic databases");
        return -1;
    }
    return 0;
}

int MailLogger::attachDB(DBHandler* handler, const std::string& path, const std::string& alias) {
    if (!MLIBCFileExist(path.c_str())) {
        SERVERLOG_ERROR_LINE("Failed to attach DB, the file does not exist: %s (%s)", path.c_str(),
                             alias.c_str());
        return -1;
    }
    if (connectDB(handler) < 0) {
        return -1;
    }
    const CriticalSection section(__FILE__, __LINE__);
    if (handler->ExecCmd(SqlText("ATTACH DATABASE '%q' AS '%q';", path.c_str(), alias.c_str())) !=
        0) {
        SERVERLOG_ERROR_LINE("Failed to attach DB: %s (%s)", path.c_str(), alias.c_str());
        return -1;
    }
    return 0;
}

int MailLogger::detachDB(DBHandler* handler, const std::string& alias) {
    if (connectDB(handler) < 0 ||
        handler->ExecCmd(SqlText("DETACH DATABASE '%q';", alias.c_str())) != 0) {
        SERVERLOG_ERROR_LINE("Failed to detach DB: %s", alias.c_str());
        return -1;
    }
    return 0;
}

int MailLogger::attachLogDBs(DBHandler* handler, MailStatus status, TimeScale scale) {
    if (scale == TimeScale::Day) {
        if (attachStatisticDB(handler) < 0) {
            return -1;
        }
    } else if (scale != TimeScale::Hour) {
        return -1;
    }
    const LogFile& log = LogFileOf(status);
    if (!shouldAttach(log.long_term_path)) {
        return 0;
    }
    if (!pscFileLockByFile(log.lock_path, 1, &lockFd(status))) {
        // The line says "mail log" for both logs: on purpose, as it always has.
        SERVERLOG_ERROR_LINE("fail to get file lock for mail log database.[0x%04X %s:%d]",
                             MLIBCErrGet(), MLIBCErrorGetFile(), MLIBCErrorGetLine());
        return -1;
    }
    SQLCmd attach;
    attach += SqlText("ATTACH DATABASE \"%s\" AS DB0;", log.long_term_path).c_str();
    if (connectDB(handler) < 0 || execRaised(*handler, attach, false) != 0) {
        SERVERLOG_ERROR_LINE("Encounter error when attach databases");
        return -1;
    }
    return 1;
}

void MailLogger::disconnectLogDB(DBHandler* handler, MailStatus status) {
    if (handler != nullptr) {
        const int code = handler->disconnect();
        if (code != 0) {
            HandleDBError(*handler, code);
        }
    }
    std::int32_t& fd = lockFd(status);
    if (fd < 0) {
        return;
    }
    if (!pscFileUnlockByFile(fd)) {
        SERVERLOG_ERROR_LINE("fail to unlock lock of %s database.[0x%04X %s:%d]",
                             LogFileOf(status).name, MLIBCErrGet(), MLIBCErrorGetFile(),
                             MLIBCErrorGetLine());
    }
    fd = -1;
}

std::int32_t& MailLogger::lockFd(MailStatus status) {
    return status == MailStatus::Rejected ? securityLockFd : mailLockFd;
}
