#include <mailserver-log/db/base.h>
#include <mailserver-log/exception/exception.h>
#include <soci/soci.h>

#include <algorithm>

#include "utils/db_command.h"
#include "utils/merosdk/file_lock_guard.h"
#include "utils/merosdk/run_as.h"
#include "utils/strings.h"

namespace serverlog::db {

namespace {

constexpr char kMainSchema[] = "main";
constexpr int kUnreadableVersion = -1;

/// Does the work under the lock, released with its failures reported. Whatever the platform refuses
/// to it is one failure for the caller.
template <class Work>
void WithLock(const std::string& lock_path, Work work) {
    try {
        utils::FileLockGuard guard(lock_path);
        work();
        guard.Unlock();
    } catch (const Exception<ETag::SDK>&) {
        throw make_exception<ETag::DB>(DBError::CheckVersionLockFail);
    }
}

}  // namespace

BaseDB::BaseDB(merodbquery::Session& session) : session_(session), schemas_{kMainSchema} {}

std::vector<std::function<bool(merodbquery::Session&)>> BaseDB::UpgradeFuncs() {
    return {};
}

std::string BaseDB::DbLock() const {
    return "";
}

std::string BaseDB::RotateDateFields() const {
    return "date";
}

std::string BaseDB::RotateTable() const {
    return "";
}

std::string BaseDB::RotateFields() const {
    return "";
}

std::string BaseDB::CreateSchema() const {
    return "";
}

merodbquery::Session& BaseDB::GetSession() {
    return session_;
}

int BaseDB::GetVersion() {
    try {
        int version = 0;
        session_.GetRawSession() << "PRAGMA user_version", soci::into(version);
        return version;
    } catch (const soci::soci_error& error) {
        SERVERLOG_ERROR_LINE("get admin log db version error: %s", error.what());
        return kUnreadableVersion;
    }
}

bool BaseDB::SetVersion(int version) {
    return session_.RawQuery("PRAGMA user_version=" + std::to_string(version));
}

bool BaseDB::Create() {
    const std::string schema = CreateSchema();
    int version = 0;
    WithLock(DbLock(), [&] { version = GetVersion(); });
    if (version > 0 || schema.empty()) {
        return Upgrade();
    }
    const std::size_t steps = UpgradeFuncs().size();
    const int newest = steps == 0 ? 0 : static_cast<int>(steps) - 1;
    bool created = false;
    WithLock(DbLock(), [&] {
        utils::RunAsRoot("create db raw session", [&] {
            // The lock was free in between: another process may have made the schema.
            version = GetVersion();
            created = version <= 0 && CreateWhole(schema, newest);
        });
    });
    return version > 0 ? Upgrade() : created;
}

bool BaseDB::CreateWhole(const std::string& schema, int newest) {
    // Schema and version in one transaction: a store with tables and version 0 could never be
    // opened again, as the step that makes the first schema would find them in its way.
    if (!session_.RawQuery("BEGIN IMMEDIATE")) {
        return false;
    }
    if (utils::ExecMultipleQuery(session_, schema) && SetVersion(newest) &&
        session_.RawQuery("COMMIT")) {
        return true;
    }
    session_.RawQuery("ROLLBACK");
    return false;
}

bool BaseDB::Upgrade() {
    bool upgraded = false;
    WithLock(DbLock(), [&] {
        utils::RunAsRoot("upgrade db raw session", [&] { upgraded = RunUpgradeFuncs(); });
    });
    return upgraded;
}

bool BaseDB::RunUpgradeFuncs() {
    const auto steps = UpgradeFuncs();
    const int version = GetVersion();
    if (version == kUnreadableVersion) {
        // Locked, or no database. Going on would stamp version 0 as soon as a lock is gone, and a
        // store with tables and version 0 can never be opened again.
        return false;
    }
    for (auto i = static_cast<std::size_t>(std::max(version + 1, 0)); i < steps.size(); ++i) {
        if (!steps[i](session_) || !SetVersion(static_cast<int>(i))) {
            return false;
        }
    }
    return true;
}

bool BaseDB::HasRecord() {
    const std::string query = utils::Replace("SELECT COUNT(*) FROM #table# LIMIT 1;", "#table#",
                                             utils::Quote(RotateTable()));
    try {
        int count = 0;
        session_.GetRawSession() << query, soci::into(count);
        return count >= 1;
    } catch (const soci::soci_error& error) {
        SERVERLOG_ERROR_LINE("get log db record count error: %s", error.what());
        return false;
    }
}

std::time_t BaseDB::GetLatestRecordTime() {
    try {
        return RecordTime("SELECT MAX(#date#) From main.");
    } catch (const soci::soci_error& error) {
        SERVERLOG_ERROR_LINE("get log db latest record time error: %s", error.what());
        return 0;
    }
}

std::time_t BaseDB::GetOldestRecordTime() {
    try {
        return RecordTime("SELECT MIN(#date#) From main.");
    } catch (const soci::soci_error& error) {
        SERVERLOG_ERROR_LINE("get log db oldest record time error: %s", error.what());
        return 0;
    }
}

std::time_t BaseDB::RecordTime(const std::string& query) {
    long long time = 0;
    // Without an indicator, so that the NULL of an empty table is an error.
    session_.GetRawSession() << utils::Replace(query, "#date#", utils::Quote(RotateDateFields())) +
                                    utils::Quote(RotateTable()) + ";",
        soci::into(time);
    return time;
}

bool BaseDB::Attach(const std::string& path, const std::string& name) {
    const std::string query =
        utils::Replace("ATTACH DATABASE path AS ", "path", utils::Quote(path)) + name;
    if (!session_.RawQuery(query)) {
        SERVERLOG_ERROR_LINE("%s", query.c_str());
        return false;
    }
    schemas_.push_back(name);
    return true;
}

bool BaseDB::Detach(const std::string& name) {
    if (name == kMainSchema) {
        return false;
    }
    const auto schema = std::find(schemas_.begin(), schemas_.end(), name);
    if (schema == schemas_.end()) {
        return true;
    }
    if (!session_.RawQuery("DETACH DATABASE " + name)) {
        return false;
    }
    schemas_.erase(schema);
    return true;
}

}  // namespace serverlog::db
