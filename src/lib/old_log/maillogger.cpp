#include <mailserver-log/old_log/maillogger.h>
#include <mailserver-log/utils/error_line.h>
#include <mailserver/file.h>
#include <mailserver/mail_conf.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <utility>

#include "old_log/create_scripts.h"
#include "old_log/log_files.h"

using namespace statistic_log;

namespace {

constexpr int kCorruptFile = 11;  // SQLITE_CORRUPT

}  // namespace

MailLogger::MailLogger(int seconds)
    : period(seconds),
      lastCountTime(std::time(nullptr)),
      errorSource(kUnknownSource),
      mailLockFd(-1),
      securityLockFd(-1) {
    if (mkdir(serverlog::db::kSpoolFolder, 0755) != 0 && errno != EEXIST) {
        SERVERLOG_ERROR_LINE("failed to create log db directory, error: %s", std::strerror(errno));
    }
    if (mailFileOwnerModeSet(serverlog::db::kSpoolFolder, "PostCube-Server", 0755) < 0) {
        return;
    }
    mailLogDb = std::make_unique<DBHandler>(kMailLog.path, MailLogScript());
    securityLogDb = std::make_unique<DBHandler>(kSecurityLog.path, SecurityLogScript());
    statisticDb = std::make_unique<DBHandler>(kStatisticPath, StatisticScript());
    securityStatisticDb =
        std::make_unique<DBHandler>(kSecurityStatisticPath, SecurityStatisticScript());
    readLastCountTime();
    errorSource = kNoSource;
}

void MailLogger::readLastCountTime() {
    std::string saved;
    if (mailConfGet("log_last_count_time", saved) < 0) {
        SERVERLOG_ERROR_LINE("Fail to get last count time");
        return;
    }
    // Cut to 32 bits on purpose, as the setting has always been read: good until 2038.
    const auto seconds = static_cast<std::int32_t>(std::strtol(saved.c_str(), nullptr, 10));
    if (seconds != 0 && seconds <= std::time(nullptr)) {
        lastCountTime = seconds;
    }
}

MailLogger::~MailLogger() {
    disconnectLogDB(mailLogDb.get(), MailStatus::Sent);
    disconnectLogDB(securityLogDb.get(), MailStatus::Rejected);
    GeoIPFree();
}

void MailLogger::run() {
    // CHECK
    checkArchiveSetting();
    securityStatistic();
    statistic();
    sleep(static_cast<unsigned>(period - std::time(nullptr) % period));
}

int MailLogger::error() {
    return std::exchange(errorSource, kNoSource);
}

int MailLogger::HandleError() {
    DBHandler* const handler = handlerOf(errorSource);
    const bool good = handler != nullptr && HandleDBError(*handler, handler->getErrCode()) == 0;
    return errorSource = good ? kNoSource : kUnknownSource;
}

int MailLogger::HandleDBError(DBHandler& handler, int code) {
    if (code == kCorruptFile) {
        SERVERLOG_ERROR_LINE("db[%s] corrupt, need regen", handler.getDBPath().c_str());
    }
    return code;
}

DBHandler* MailLogger::handlerOf(int source) const {
    switch (source) {
        case kMailLogSource:
            return mailLogDb.get();
        case kSecurityLogSource:
            return securityLogDb.get();
        case kStatisticSource:
            return statisticDb.get();
        case kSecurityStatisticSource:
            return securityStatisticDb.get();
        default:
            return nullptr;
    }
}
