#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/archive/archiver.h>
#include <mailserver/file.h>
#include <mailserver/mail_conf.h>
#include <mero/mail_node_cluster.h>
#include <mero/notification.h>
#include <mlibc/sz_hash.h>

#include <ctime>
#include <memory>

#include "db/checkpoint.h"
#include "db/store_schema.h"
#include "log/archive/file_transfer.h"
#include "utils/db_command.h"
#include "utils/files.h"
#include "utils/merosdk/file_lock_guard.h"

namespace serverlog::log::archive {

namespace {

constexpr char kEnabled[] = "archive_enable_schedule";
constexpr char kDestination[] = "archive_destination";
constexpr char kShareRemoved[] = "POSTCUBE_SERVER_ARCHIVE_SHARE_REMOVE";
constexpr char kTexts[] = "/var/packages/PostCube-Server/target/app/texts/";
constexpr char kNotifyFilter[] = "/var/packages/PostCube-Server/target/etc/notify.filter";
constexpr int kHashSize = 1024;

struct HashDeleter {
    void operator()(MLIBCSzHash* hash) const { MLIBCSzHashFree(hash); }
};

std::string ReadSetting(const std::string& key) {
    std::string value;
    if (mailConfGet(key, value) < 0) {
        throw make_exception<ETag::Archive>(ArchiveError::PrepareEnvFail, "get user settings fail");
    }
    return value;
}

/// Throws unless this machine may act for the mail cluster.
void CheckCluster() {
    const MERO::POSTCUBE_SERVER::MEROMailNodeCluster cluster;
    MERO::POSTCUBE_SERVER::Role role = {};
    if (!cluster.nodeRoleGet(role)) {
        throw make_exception<ETag::Archive>(ArchiveError::ClusterOperationFail,
                                            "get cluster role fail");
    }
    if (!cluster.isClusterHealth(false) || role.may_act == 0) {
        throw make_exception<ETag::Archive>(ArchiveError::ClusterOperationFail,
                                            "cluster is not ready for archive");
    }
}

std::string DayPrefix(std::time_t time) {
    std::tm day = {};
    localtime_r(&time, &day);
    char text[32] = {};
    std::strftime(text, sizeof text, "%Y%m%d_", &day);
    return text;
}

}  // namespace

Archiver::Archiver(ArchiveFlags flags) : flags_(flags) {}

Archiver::~Archiver() = default;

bool Archiver::Archive() {
    try {
        if (!IsEnabled()) {
            return true;
        }
        const std::string dest = ReadSetting(kDestination);
        if (!CheckDestFolder(dest)) {
            throw make_exception<ETag::Archive>(ArchiveError::PrepareEnvFail,
                                                "not valid archive path");
        }
        if (!CopyDb(dest)) {
            throw make_exception<ETag::Archive>(ArchiveError::CopyFail, "Copy archive db fail");
        }
        return true;
    } catch (...) {
        return false;  // what it was has been written when it was thrown
    }
}

bool Archiver::IsEnabled() {
    return ReadSetting(kEnabled) == "yes";
}

bool Archiver::CheckDestFolder(const std::string& dest) {
    if (!dest.empty() && pcsDirectoryExist(dest)) {
        return true;
    }
    CheckCluster();
    if (!SendFailNotify(dest)) {
        SERVERLOG_ERROR_LINE("notify archive's failure fail: %s", dest.c_str());
    }
    if (mailConfSet(kEnabled, "no", true, 0) < 0) {
        SERVERLOG_ERROR_LINE("Failed to mailConfSet disable archive");
    }
    return false;
}

bool Archiver::CopyDb(const std::string& dest) {
    bool done = true;
    if ((flags_ & kArchiveAdminLog) != 0) {
        done = CopyStore<db::AdminLogDB>(dest) && done;
    }
    if ((flags_ & kArchiveMailLog) != 0) {
        done = CopyStore<db::MailLogDB>(dest) && done;
    }
    if ((flags_ & kArchiveSecurityLog) != 0) {
        done = CopyStore<db::SecurityLogDB>(dest) && done;
    }
    if ((flags_ & kArchivePlainMailLogs) != 0) {
        done = CopyPlainMailLog(dest) && done;
        done = CopyPlainMailLogs(dest) && done;
    }
    return done;
}

template <class DB>
bool Archiver::CopyStore(const std::string& dest) {
    using Traits = db::StoreTraits<DB>;
    const utils::FileLockGuard lock(Traits::kOperationLock);
    const bool copied = CopyDbFile(Traits::kPath, dest);
    const std::string script = db::internal::CreateScript<DB>("main");
    return CopyFastArchiveDb<DB>(Traits::kPath, dest, script) && copied;
}

template <class DB>
bool Archiver::CopyFastArchiveDb(const std::string& store_path, const std::string& dest,
                                 const std::string& index_script) {
    const std::string archive =
        utils::FileParentFolder(store_path) + "/archive_" + utils::FileName(store_path);
    if (!utils::Exist(archive)) {
        return true;
    }
    const std::string real = utils::RealPath(archive);
    std::string prefix;
    {
        db::Provider provider(real);
        DB db = provider.Get<DB>(true);
        if (!db.HasRecord()) {
            return true;
        }
        const std::time_t latest = db.GetLatestRecordTime();
        const std::time_t oldest = db.GetOldestRecordTime();
        prefix = GetNewNamePrefix(oldest, latest);
        if (!utils::ExecMultipleQuery(db.GetSession(), index_script)) {
            SERVERLOG_ERROR_LINE("Create archive db %s index fail", real.c_str());
        }
        // The database and its log can't be moved at once.
        db::Checkpoint(db.GetSession(), db::CheckpointMode::Full);
    }
    return CopyWithSidecars(real, dest, prefix, true);
}

std::string Archiver::GetNewNamePrefix(long oldest, long latest) {
    if (oldest == 0 || latest == 0) {
        throw make_exception<ETag::Archive>(ArchiveError::CopyFail, "prepare archive name fail");
    }
    return DayPrefix(oldest) + DayPrefix(latest);
}

bool Archiver::SendFailNotify(const std::string& dest) {
    MLIBCSzHash* table = MLIBCSzHashAlloc(kHashSize);
    if (table == nullptr) {
        return false;
    }
    MLIBCSzHashSetValue(&table, "%SHARED_FOLDER%", dest.c_str());
    const std::unique_ptr<MLIBCSzHash, HashDeleter> hash(table);
    return MEROSysNotifySendNotificationCustomized(kShareRemoved, kTexts, kNotifyFilter, hash.get(),
                                                   0) != 0;
}

template bool Archiver::CopyFastArchiveDb<db::AdminLogDB>(const std::string&, const std::string&,
                                                          const std::string&);
template bool Archiver::CopyFastArchiveDb<db::MailLogDB>(const std::string&, const std::string&,
                                                         const std::string&);
template bool Archiver::CopyFastArchiveDb<db::SecurityLogDB>(const std::string&, const std::string&,
                                                             const std::string&);

}  // namespace serverlog::log::archive
