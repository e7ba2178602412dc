#pragma once

#include <mailserver-log/export.h>

#include <cstdint>
#include <string>

namespace serverlog::db {
class AdminLogDB;
class MailLogDB;
class SecurityLogDB;
}  // namespace serverlog::db

namespace serverlog::log::archive {

/// What an Archiver hands over: the values below, added up. Further bits mean nothing.
using ArchiveFlags = std::uint32_t;

inline constexpr ArchiveFlags kArchiveAdminLog = 1;       ///< the store of the admin log
inline constexpr ArchiveFlags kArchiveMailLog = 2;        ///< that of the mail log
inline constexpr ArchiveFlags kArchiveSecurityLog = 4;    ///< that of the security log
inline constexpr ArchiveFlags kArchivePlainMailLogs = 8;  ///< the plain text mail logs

/// Hands the logs over to a folder of the administrator's choice: a copy of each store's current
/// file, the rows that rotation gathered for the archive, whose files are moved there under a name
/// that tells their days, and copies of the plain text mail logs.
///
/// Settings: `archive_enable_schedule` is "yes" while archiving is on, `archive_destination` is the
/// folder, `archive_last_archive_time` the newest modification time, in seconds since the epoch, of
/// a plain text mail log that was copied.
///
/// No file in the destination is replaced by an older one, and none is ever found half written
/// under its name.
///
/// Processes may archive at the same time. Within a process one thread at a time works with stores,
/// and none of its connections is inside a transaction on one: the system drops a process's locks
/// on a file that it copies.
class MAILSERVER_LOG_EXPORT Archiver {
 public:
    /// @param flags  what Archive and CopyDb hand over
    explicit Archiver(ArchiveFlags flags);
    ~Archiver();

    /// Archives once.
    ///
    /// Waits for the operation lock of each store without a limit, and up to 60 s for a store that
    /// is busy.
    ///
    /// @return true when archiving is off or all went well. False for any failure: what it was is
    ///         in the mail log. Never throws.
    bool Archive();

    /// Whether archiving is on: the setting is exactly "yes".
    ///
    /// Throws Exception<ETag::Archive> with PrepareEnvFail when it can't be read.
    bool IsEnabled();

    /// Whether the folder exists. When it is gone, and this machine may act for the mail cluster,
    /// the administrator is notified and archiving is turned off.
    ///
    /// Throws Exception<ETag::Archive> with ClusterOperationFail when the folder is gone and this
    /// machine may do neither, or its role can't be told.
    bool CheckDestFolder(const std::string& dest);

    /// Hands over what the flags ask for. A failure does not stop what comes behind it.
    ///
    /// Throws where a store's lock can't be had or its archive file not be opened or named, as
    /// FileLockGuard, Provider::Get and GetNewNamePrefix do; what comes behind that is left out.
    bool CopyDb(const std::string& dest);

    /// Moves a store's archive file, with its side files, to the destination, so that the next
    /// rotation begins a new one. A missing file, or one without a row, is fine and stays.
    ///
    /// @param store_path    the store's current file
    /// @param dest          the destination folder
    /// @param index_script  makes the indices, which the file was filled without; if it fails, with
    ///                      an error line, the file goes out without them
    ///
    /// @return false, with an error line each, when a file could not be moved
    ///
    /// Throws as Provider::Get and GetNewNamePrefix do.
    template <class DB>
    bool CopyFastArchiveDb(const std::string& store_path, const std::string& dest,
                           const std::string& index_script);

    /// The days of the oldest and the latest row, by the local calendar: "20240302_20240409_".
    ///
    /// @param oldest, latest  seconds since the epoch, not 0
    ///
    /// Throws Exception<ETag::Archive> with CopyFail when one of them is 0.
    std::string GetNewNamePrefix(long oldest, long latest);

    /// Tells the administrator that the destination folder is gone. False when that fails.
    bool SendFailNotify(const std::string& dest);

 private:
    template <class DB>
    bool CopyStore(const std::string& dest);

    ArchiveFlags flags_;
};

extern template bool Archiver::CopyFastArchiveDb<db::AdminLogDB>(const std::string&,
                                                                 const std::string&,
                                                                 const std::string&);
extern template bool Archiver::CopyFastArchiveDb<db::MailLogDB>(const std::string&,
                                                                const std::string&,
                                                                const std::string&);
extern template bool Archiver::CopyFastArchiveDb<db::SecurityLogDB>(const std::string&,
                                                                    const std::string&,
                                                                    const std::string&);

}  // namespace serverlog::log::archive
