#pragma once

#include <mailserver-log/export.h>
#include <merodbquery/session.h>

#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace serverlog::db {

/// One log store: an SQLite file with its schema version in PRAGMA user_version.
///
/// Get one from Provider. An object is used by one thread at a time; objects on one shared session
/// count as one.
class MAILSERVER_LOG_EXPORT BaseDB {
 public:
    /// @param session  shares its connection with the store's own session; need not outlive it
    explicit BaseDB(merodbquery::Session& session);
    virtual ~BaseDB() = default;

    /// The steps of migration. The entry at index i turns version i - 1 into version i; the last
    /// index is the newest version.
    virtual std::vector<std::function<bool(merodbquery::Session&)>> UpgradeFuncs();

    /// The path of the lock file that is held while the schema is created or upgraded.
    virtual std::string DbLock() const;

    /// The name of the column that holds a row's date.
    virtual std::string RotateDateFields() const;

    /// The name of the main table.
    virtual std::string RotateTable() const;

    /// The columns that a copy of rows names, joined with ", ".
    virtual std::string RotateFields() const;

    /// The SQL script that makes the newest schema in an empty file.
    virtual std::string CreateSchema() const;

    /// The store's session; valid as long as the store object.
    merodbquery::Session& GetSession();

    /// Makes the newest schema in a file at version 0, as a whole or not at all. A file of any
    /// other version is upgraded instead.
    ///
    /// False if a statement failed, or if this process may not become root. Throws
    /// Exception<ETag::DB> with CheckVersionLockFail if the lock can't be had or given back.
    bool Create();

    /// Runs the steps above the file's version, in ascending order, each followed by its version
    /// stamp. The first failure ends it and leaves the file at the last finished version. A file
    /// newer than this library knows is left alone, and so is one whose version can't be read.
    ///
    /// Fails as Create does; false also if the version can't be read.
    bool Upgrade();

    /// The schema version; -1, with an error line, if it can't be read.
    int GetVersion();

    /// Whether the main table holds a row. False, with an error line, also if the query fails.
    bool HasRecord();

    /// The date of the newest row in seconds since the epoch; 0, with an error line, if there is
    /// none or the query fails. Ask HasRecord first.
    std::time_t GetLatestRecordTime();

    /// The date of the oldest row; otherwise as GetLatestRecordTime.
    std::time_t GetOldestRecordTime();

    /// Attaches another database file to the session. It stays attached for as long as the
    /// connection lives, also beyond this object if the session is shared.
    ///
    /// @param path  the file, which SQLite creates if it is missing
    /// @param name  the schema name that it gets; put into SQL as it is, so never from outside
    ///
    /// False, with an error line, if SQLite refuses.
    bool Attach(const std::string& path, const std::string& name);

    /// Detaches what Attach of this object attached. "main" is never detached: false. A name that
    /// is not attached is true at once. False also if SQLite refuses; the schema is then still
    /// there.
    bool Detach(const std::string& name);

    /// The schema names to read the store by: "main", then what Attach added. Valid as long as the
    /// store object.
    const std::vector<std::string>& Schemas() const { return schemas_; }

 protected:
    /// The copy shares the connection.
    BaseDB(const BaseDB&) = default;

 private:
    bool CreateWhole(const std::string& schema, int newest);
    bool RunUpgradeFuncs();
    bool SetVersion(int version);
    std::time_t RecordTime(const std::string& query);

    merodbquery::Session session_;
    std::vector<std::string> schemas_;
};

}  // namespace serverlog::db
