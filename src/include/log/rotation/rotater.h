#pragma once

#include <mailserver-log/export.h>

#include <cstdint>
#include <string>

namespace serverlog::db {
class AdminLogDB;
class MailLogDB;
class SecurityLogDB;
}  // namespace serverlog::db

namespace serverlog::log::rotation {

/// Moves the rows of a log store that are older than today out of the current file into the
/// long-term file beside it, and, while scheduled archiving is on, also into the file that Archiver
/// takes away.
///
/// Of a store `<name>.db` the long-term file is `<name>_main.db` and the archive file
/// `archive_<name>.db`, both in its folder. All work is done on a copy of the long-term file,
/// `tmp_<name>.db`, which takes the place of that file once it is whole. A rotation that fails
/// anywhere, even by loss of power, loses no row. Until the copy has taken its place, all is as it
/// was, but for rows that are in the archive file already; after that, rows may be in the current
/// and in the long-term file. The next rotation adds such rows once more.
///
/// Instances exist for AdminLogDB, MailLogDB and SecurityLogDB. Build one, call Rotate and drop it.
///
/// Processes may rotate at the same time: one store is rotated, archived or upgraded by one of them
/// at a time. Readers and writers of rows go on meanwhile. Within a process one thread at a time
/// works with stores: the copy is opened over a session that the process shares. That session stays
/// open, and so does the file, until the next rotation or the end of the process.
template <class DB>
class MAILSERVER_LOG_EXPORT Rotater {
 public:
    /// Fixes the cut: rows from before the start of the present day, by the local calendar, are
    /// moved. An object that is kept over midnight goes on with that cut.
    ///
    /// @param path  the store's current file, which Rotate wants on a volume: with all links
    ///              resolved its path begins with "/volume"
    explicit Rotater(std::string path);

    /// Rotates once, whether or not there is a row to move.
    ///
    /// Sets the environment variable SQLITE_TMPDIR for the process to the folder of the stores.
    /// Waits for the store's operation lock without a limit, and up to 60 s for a file that is
    /// busy.
    ///
    /// @return true when all is done. False for any failure: what it was is in the mail log, and a
    ///         copy that was begun stays until the next rotation. Never throws.
    bool Rotate();

    /// Removes the rows older than the cut from the current file, whether or not they are anywhere
    /// else. Its indices, but that on the date, are away meanwhile.
    ///
    /// Throws Exception<ETag::Rotation> with RotateDbFail if a statement fails, and as
    /// Provider::Get does.
    void WipeCurrDb();

    /// The statement that copies the rows older than the cut.
    ///
    /// @param from, to  schema names
    std::string RotateQuery(const DB& db, const std::string& from, const std::string& to);

    /// The statement that removes the rows older than the cut.
    std::string WipeQuery(const DB& db, const std::string& schema);

    /// The sub-select of the date from which on rows are kept in the long-term file: that of the
    /// row with exactly as many younger ones as the file may hold. NULL where there are not so
    /// many. It names no schema and so reads the session's main one.
    std::string CleanCondition(const DB& db);

    /// The statement that removes the rows before CleanCondition.
    std::string CleanUpQuery(const DB& db, const std::string& schema);

    /// The part of the script that copies the rows also to the archive file, which is created if it
    /// is missing; empty while scheduled archiving is off, and, with an error line, when the
    /// setting can't be read.
    ///
    /// Throws as DbCreate does.
    std::string FastArchive(const DB& db, const std::string& archive_path);

    /// Creates the store at the path if it is missing, brings it to the newest schema, and gives it
    /// to the mail server's user, readable by all. Only the last may fail, with an error line.
    ///
    /// Throws as Provider::Get does.
    void DbCreate(const std::string& path);

 private:
    struct Files;

    void RotateStore();
    std::int64_t FillWorkFile(DB& db, const Files& files);
    bool CopyRows(DB& db, std::int64_t& last_row);
    void WipeRows(const std::string& further_condition);

    std::string path_;
    std::int64_t cut_time_;
};

extern template class Rotater<db::AdminLogDB>;
extern template class Rotater<db::MailLogDB>;
extern template class Rotater<db::SecurityLogDB>;

}  // namespace serverlog::log::rotation
