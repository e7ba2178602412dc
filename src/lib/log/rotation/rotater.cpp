#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/rotation/rotater.h>
#include <mailserver/file.h>
#include <mailserver/mail_conf.h>
#include <mailserver/round_time.h>
#include <merodbquery/session.h>
#include <soci/soci.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "db/store_schema.h"
#include "log/rotation/work_file.h"
#include "utils/db_command.h"
#include "utils/files.h"
#include "utils/merosdk/file_lock_guard.h"
#include "utils/strings.h"

namespace serverlog::log::rotation {

namespace {

using db::internal::CreateScript;
using db::internal::DropScript;

constexpr char kMain[] = "main";
constexpr char kCurrent[] = "currDB";
constexpr char kArchive[] = "archiveDB";
constexpr char kVolume[] = "/volume";
constexpr char kOwner[] = "PostCube-Server";
constexpr unsigned kMode = 0644;
constexpr int kRowsOfLongTermFile = 4000000;

// What makes the work faster and changes nothing about the finished file. The work file is thrown
// away unless it is whole, and synced before it is used: so no journal and no syncing meanwhile.
// What is deleted in it goes away with VACUUM, so it need not be overwritten, as SQLite may do by
// default: without journal and overwriting, dropping the indices of 4,000,000 rows takes 0.5 s
// instead of 8.4 s. Each index reads the whole table, which no cache holds: mapped into memory, all
// indices take 21.4 s instead of 23.9 s.
constexpr char kSessionSettings[] =
    "PRAGMA main.journal_mode = OFF;"
    "PRAGMA main.synchronous = OFF;"
    "PRAGMA main.secure_delete = OFF;"
    "PRAGMA main.mmap_size = 1073741824;";

// For making indices and for removing rows. Entries of an index are sorted in pieces as large as
// the cache may be, which are merged then: with 16 MiB, which the processor's own cache holds, all
// indices took 22.4 s, with SQLite's own 2 MiB 24.5 s, with 8 and 64 MiB 26.0 and 25.1 s. To wipe
// 200,000 rows took 1.0 s instead of 1.4 s with 2 MiB. With these VACUUM is faster, by 0.3 to 0.7
// of 5 s, so it keeps them. Sorting in further threads (PRAGMA threads) took half as much of the
// processor again, and over all indices gained 8 % at best.
constexpr char kCacheSetting[] = "PRAGMA main.cache_size = -16384;";

std::string AttachQuery(const std::string& path, const std::string& schema) {
    return "ATTACH DATABASE " + utils::Quote(path) + " AS " + schema + ";";
}

std::string DetachQuery(const std::string& schema) {
    return "DETACH DATABASE " + schema + ";";
}

void SetOwner(const std::string& path) {
    if (mailFileOwnerModeSet(path, kOwner, kMode) < 0) {
        SERVERLOG_ERROR_LINE("Change db owner fail: %s", path.c_str());
    }
}

/// Takes back what a script that broke off has left in the session. The process shares it, so it
/// would keep the next rotation from attaching its files.
class SessionCleaner {
 public:
    explicit SessionCleaner(merodbquery::Session& session) : session_(session) {}

    ~SessionCleaner() {
        // Each fails where there is nothing to take back.
        session_.RawQuery("ROLLBACK");
        session_.RawQuery(DetachQuery(kArchive));
        session_.RawQuery(DetachQuery(kCurrent));
    }

    SessionCleaner(const SessionCleaner&) = delete;
    SessionCleaner& operator=(const SessionCleaner&) = delete;

 private:
    merodbquery::Session& session_;
};

}  // namespace

/// The files of one rotation, by absolute paths without links.
template <class DB>
struct Rotater<DB>::Files {
    /// Throws Exception<ETag::Rotation> with PrepareEnvFail for a file that is not on a volume, and
    /// as utils::RealPath does.
    explicit Files(const std::string& path) : current(utils::RealPath(path)) {
        if (!utils::Startswith(current, kVolume)) {
            throw make_exception<ETag::Rotation>(RotationError::PrepareEnvFail, "illegal path");
        }
        const std::string folder = utils::FileParentFolder(current);
        const std::string name = utils::FileName(current);
        work = folder + "/tmp_" + name;
        long_term = folder + "/" + utils::Replace(name, ".db", "_main.db");
        archive = folder + "/archive_" + name;
    }

    std::string current;
    std::string work;
    std::string long_term;
    std::string archive;
};

template <class DB>
Rotater<DB>::Rotater(std::string path)
    : path_(std::move(path)), cut_time_(getRoundTime(std::time(nullptr), CountInterval::Day)) {}

template <class DB>
bool Rotater<DB>::Rotate() {
    try {
        RotateStore();
        return true;
    } catch (...) {
        SERVERLOG_ERROR_LINE("rotate file: %s fail", path_.c_str());
        return false;
    }
}

template <class DB>
void Rotater<DB>::RotateStore() {
    // VACUUM needs as much room as the long-term file has.
    if (setenv("SQLITE_TMPDIR", db::kSpoolFolder, 1) != 0) {
        throw make_exception<ETag::Rotation>(RotationError::PrepareEnvFail, std::strerror(errno));
    }
    const Files files(path_);
    // Before the look for a left-over: a work file may be that of a rotation under way.
    const utils::FileLockGuard lock(db::StoreTraits<DB>::kOperationLock);
    const WorkFile work(files.work);
    work.RemoveLeftOver();
    DbCreate(files.long_term);
    work.CopyFrom(files.long_term);
    SetOwner(files.work);
    db::Provider provider(files.work);
    DB db = provider.Get<DB>(true);
    const std::int64_t last_row = FillWorkFile(db, files);
    work.TakePlaceOf(files.long_term);
    WipeRows(" AND rowid <= " + std::to_string(last_row));
}

template <class DB>
std::int64_t Rotater<DB>::FillWorkFile(DB& db, const Files& files) {
    merodbquery::Session& session = db.GetSession();
    const std::string before = kSessionSettings + DropScript(db, kMain) +
                               AttachQuery(files.current, kCurrent) +
                               FastArchive(db, files.archive) + CleanUpQuery(db, kMain);
    const std::string behind = DetachQuery(kCurrent) +
                               "PRAGMA journal_mode = OFF;"
                               "VACUUM;" +
                               kCacheSetting + CreateScript<DB>(kMain);
    const SessionCleaner cleaner(session);
    std::int64_t last_row = 0;
    if (!utils::ExecMultipleQuery(session, before) || !CopyRows(db, last_row) ||
        !utils::ExecMultipleQuery(session, behind)) {
        throw make_exception<ETag::Rotation>(RotationError::RotateDbFail, "rotate fail");
    }
    session.RawQuery("PRAGMA shrink_memory");  // the process keeps the session
    return last_row;
}

template <class DB>
bool Rotater<DB>::CopyRows(DB& db, std::int64_t& last_row) {
    merodbquery::Session& session = db.GetSession();
    // In one transaction, so that both see the same rows. A row that a writer adds later with a
    // date of yesterday is not copied, so it must not be removed either.
    if (!session.RawQuery("BEGIN")) {
        return false;
    }
    long long last = 0;
    session.GetRawSession() << std::string("SELECT COALESCE(MAX(rowid), 0) FROM ") + kCurrent +
                                   "." + db.RotateTable(),
        soci::into(last);
    last_row = last;
    return utils::ExecMultipleQuery(session, RotateQuery(db, kCurrent, kMain)) &&
           session.RawQuery("COMMIT");
}

template <class DB>
void Rotater<DB>::WipeCurrDb() {
    WipeRows("");
}

template <class DB>
void Rotater<DB>::WipeRows(const std::string& further_condition) {
    db::Provider provider(path_);
    DB db = provider.Get<DB>(false);
    const std::string script = kCacheSetting + DropScript(db, kMain) +
                               utils::RemoveTail(WipeQuery(db, kMain), ";") + further_condition +
                               ";" + CreateScript<DB>(kMain);
    if (!utils::ExecMultipleQuery(db.GetSession(), script)) {
        throw make_exception<ETag::Rotation>(RotationError::RotateDbFail, "clean up curr db fail");
    }
}

template <class DB>
std::string Rotater<DB>::RotateQuery(const DB& db, const std::string& from, const std::string& to) {
    const std::string fields = db.RotateFields();
    const std::string table = db.RotateTable();
    return "INSERT INTO " + to + "." + table + "( " + fields + ") SELECT " + fields + " FROM " +
           from + "." + table + " WHERE " + db.RotateDateFields() + " < " +
           std::to_string(cut_time_) + ";";
}

template <class DB>
std::string Rotater<DB>::WipeQuery(const DB& db, const std::string& schema) {
    return "DELETE FROM " + schema + "." + db.RotateTable() + " WHERE " + db.RotateDateFields() +
           " < " + std::to_string(cut_time_) + ";";
}

template <class DB>
std::string Rotater<DB>::CleanCondition(const DB& db) {
    const std::string date = db.RotateDateFields();
    return "(SELECT " + date + " FROM " + db.RotateTable() + " ORDER BY " + date +
           " DESC LIMIT 1 OFFSET " + std::to_string(kRowsOfLongTermFile) + ")";
}

template <class DB>
std::string Rotater<DB>::CleanUpQuery(const DB& db, const std::string& schema) {
    return "DELETE FROM " + schema + "." + db.RotateTable() + " WHERE " + db.RotateDateFields() +
           " < " + CleanCondition(db) + ";";
}

template <class DB>
std::string Rotater<DB>::FastArchive(const DB& db, const std::string& archive_path) {
    std::string enabled;
    if (mailConfGet("archive_enable_schedule", enabled) < 0) {
        SERVERLOG_ERROR_LINE("get redis key fail: archive_enable_schedule");
        return "";
    }
    if (enabled != "yes") {
        return "";
    }
    DbCreate(archive_path);
    return AttachQuery(archive_path, kArchive) + DropScript(db, kArchive) +
           RotateQuery(db, kCurrent, kArchive) + DetachQuery(kArchive);
}

template <class DB>
void Rotater<DB>::DbCreate(const std::string& path) {
    {
        db::Provider provider(path);
        provider.Get<DB>(false);
    }
    SetOwner(path);
}

template class Rotater<db::AdminLogDB>;
template class Rotater<db::MailLogDB>;
template class Rotater<db::SecurityLogDB>;

}  // namespace serverlog::log::rotation
