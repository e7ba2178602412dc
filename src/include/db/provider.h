#pragma once

#include <mailserver-log/export.h>
#include <merodbquery/session.h>

#include <string>

namespace serverlog::db {

class AdminLogDB;
class MailLogDB;
class SecurityLogDB;

/// Opens a log store by its path: the one way to open a store.
///
/// A store below the spool folder is internal: it is created if it is missing and upgraded if it is
/// old. Any other, such as an archive on another volume, is external: it is opened as it stands,
/// through a symbolic link in /tmp that lives as long as this object. So a Provider must outlive
/// the store object that it gave for an external path.
class MAILSERVER_LOG_EXPORT Provider {
 public:
    /// @param path  the store file; its folder must exist
    ///
    /// Throws Exception<ETag::FileSystem> with RealPathFail if the spool folder or the path's
    /// folder does not exist.
    explicit Provider(const std::string& path);

    /// Removes the link of an external store. A failure writes an error line.
    ~Provider();

    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    /// Opens the store. DB is AdminLogDB, MailLogDB or SecurityLogDB.
    ///
    /// Each call for an external store makes a link of its own, of which only the last one is
    /// removed in the end: call it once there.
    ///
    /// @param shared  use the one session that the process keeps for the path, instead of a new
    /// one;
    ///                no effect on an external store
    ///
    /// Throws Exception<ETag::FileSystem> with NotFound for an external path that does not exist
    /// and NoAvailableTempPath or StatusFail from looking for a path; Exception<ETag::DB> with
    /// BadSession if SQLite can't open the file, CreateFail or UpgradeFail if the schema could not
    /// be brought to the newest version, CheckVersionLockFail if its lock can't be had, and
    /// SymlinkExternalPathFail if the link can't be made.
    template <class DB>
    DB Get(bool shared);

    /// Makes a symbolic link to the path, which Get then opens in its place. Get calls it for
    /// external paths.
    ///
    /// @param model  the link's path, with a '%' for each random hexadecimal digit
    ///
    /// Throws as Get does for its link.
    void CreateExternalTmpLn(const std::string& model);

 private:
    merodbquery::Session OpenSession(bool shared);

    bool internal_;
    std::string path_;
    std::string path_to_open_;
};

extern template AdminLogDB Provider::Get<AdminLogDB>(bool);
extern template MailLogDB Provider::Get<MailLogDB>(bool);
extern template SecurityLogDB Provider::Get<SecurityLogDB>(bool);

}  // namespace serverlog::db
