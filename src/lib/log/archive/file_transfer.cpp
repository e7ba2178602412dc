#include "log/archive/file_transfer.h"

#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver/file.h>
#include <mailserver/mail_conf.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "db/side_files.h"
#include "log/archive/still_store.h"
#include "utils/files.h"
#include "utils/merosdk/list_files.h"

namespace serverlog::log::archive {

namespace {

constexpr char kLastArchiveTime[] = "archive_last_archive_time";
constexpr char kPlainLog[] = "aggr_maillog";
constexpr char kPlainLogPrefix[] = "aggr_maillog-";
constexpr long kWeek = 604800;
constexpr const char* kSidecars[] = {db::kWalSuffix, db::kSharedMemorySuffix};

/// The database and what exists beside it.
std::vector<std::string> WithSidecars(const std::string& path) {
    std::vector<std::string> files = {path};
    for (const char* suffix : kSidecars) {
        if (utils::Exist(path + suffix)) {
            files.push_back(path + suffix);
        }
    }
    return files;
}

// SQLite would take what an earlier copy left beside the target for that of the new database.
void RemoveStaleSidecars(const std::vector<std::string>& files, const std::string& target) {
    if (pcsGetFileMtime(files.front()) < pcsGetFileMtime(target)) {
        return;  // nor is the target replaced
    }
    for (const char* suffix : kSidecars) {
        if (std::find(files.begin(), files.end(), files.front() + suffix) == files.end()) {
            utils::Unlink(target + suffix);
        }
    }
}

/// Does the work; false, with an error line, when a file could not be taken along.
template <class Work>
bool Try(Work work) {
    try {
        return work();
    } catch (const Exception<ETag::FileSystem>& error) {
        SERVERLOG_ERROR_LINE("Copy file fail: %s", exception_str(error).c_str());
        return false;
    }
}

bool TryTransfer(const std::string& from, const std::string& to, bool move) {
    return Try([&] {
        move ? utils::RenameFileWithUpdate(from, to) : utils::CopyFileWithUpdate(from, to);
        return true;
    });
}

/// @param files  the database and what exists beside it
bool Transfer(const std::vector<std::string>& files, const std::string& dest,
              const std::string& prefix, bool move) {
    const auto target = [&](const std::string& from) {
        return dest + "/" + prefix + utils::FileName(from);
    };
    RemoveStaleSidecars(files, target(files.front()));
    if (!TryTransfer(files.front(), target(files.front()), move)) {
        return false;  // rows may be in its log alone, which so stays with it
    }
    bool done = true;
    for (std::size_t i = 1; i < files.size(); ++i) {
        done = TryTransfer(files[i], target(files[i]), move) && done;
    }
    return done;
}

/// 0 when the setting is no time.
long ReadLastArchiveTime() {
    std::string value;
    if (mailConfGet(kLastArchiveTime, value) < 0) {
        SERVERLOG_ERROR_LINE("Failed to mailConfGet archive_last_archive_time");
        value.clear();
    }
    return value.empty() ? std::time(nullptr) - kWeek : std::strtol(value.c_str(), nullptr, 10);
}

/// Copies what is newer than `last_time`, and raises that to the newest time seen.
bool CopyNewPlainLogs(const std::string& dest, long& last_time) {
    const long since = last_time;
    for (const std::string& file : utils::ListFilesWithPrefix(db::kSpoolFolder, kPlainLogPrefix)) {
        const long time = pcsGetFileMtime(file);
        if (time == 0) {
            SERVERLOG_ERROR_LINE("Get file: %s mtime error", file.c_str());
            return false;
        }
        if (time > since) {
            utils::CopyFileWithUpdate(file, dest + "/" + utils::FileName(file));
            last_time = std::max(last_time, time);
        }
    }
    return true;
}

}  // namespace

bool CopyWithSidecars(const std::string& path, const std::string& dest, const std::string& prefix,
                      bool move) {
    return Transfer(WithSidecars(path), dest, prefix, move);
}

bool CopyDbFile(const std::string& path, const std::string& dest) {
    if (!utils::Exist(path)) {
        return true;
    }
    const std::string real = utils::RealPath(path);
    // Before the store is opened, which may make files beside it that hold nothing.
    const std::vector<std::string> files = WithSidecars(real);
    return Try([&] {
        const StillStore still(real);
        return Transfer(files, dest, "", false);
    });
}

bool CopyPlainMailLog(const std::string& dest) {
    const std::string path = std::string(db::kSpoolFolder) + "/" + kPlainLog;
    return !utils::Exist(path) || TryTransfer(utils::RealPath(path), dest + "/" + kPlainLog, false);
}

bool CopyPlainMailLogs(const std::string& dest) {
    long last_time = ReadLastArchiveTime();
    if (last_time == 0) {
        SERVERLOG_ERROR_LINE("Get last archive time fail");
        return false;
    }
    try {
        if (!CopyNewPlainLogs(dest, last_time)) {
            return false;
        }
        if (mailConfSet(kLastArchiveTime, std::to_string(last_time), false, 0) < 0) {
            SERVERLOG_ERROR_LINE("Update archive time failed");
        }
        return true;
    } catch (...) {
        SERVERLOG_ERROR_LINE("Copy archived plain text maillog fail");
        return false;
    }
}

}  // namespace serverlog::log::archive
