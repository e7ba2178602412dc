#pragma once

#include <soci/soci.h>

#include <memory>
#include <string>

namespace merodbquery {

class Connection;

/// A statement that stays prepared from run to run.
struct KeptStatement {
    soci::statement statement;  ///< prepared
    /// What is bound to it, so that whoever comes again with the same need not bind it again:
    /// inserting a row takes a seventh longer when its columns are bound anew, by their names.
    std::shared_ptr<const void> bound;
};

/// A connection to one SQLite file. Copies share the connection; it closes with the last copy, or
/// for all of them on Disconnect().
///
/// The connection follows its path: when the file was renamed, replaced or removed since it was
/// opened, or the file of an attached schema was, the connection reopens its path before the next
/// RawQuery, GetRawSession or preparing of a query, so that nothing is written into a file that is
/// gone from its place.
/// - Inside a transaction it stays on the old file until the transaction ends.
/// - Attached schemas are attached again from their paths. A schema whose file is missing is left
///   out, not created; statements that name it then fail.
/// - The path is created again, empty, if nothing is there: statements on the missing tables fail,
///   and whoever opens the store next finds a file to create its tables in. A path that was a
///   symbolic link when it was opened is never created again.
/// - Rows that stood in the write-ahead log of the old file are brought into the old file first.
/// - A statement that is not finished keeps reading the old file; that closes when the statement is
///   gone. Only then may write-ahead rows of the old file stay behind.
/// - Pragmas of the connection and temporary tables are lost.
/// If the path cannot be reopened the session is not good, and every further use tries again.
///
/// One connection, with all copies and the queries on it, is for one thread at a time.
class Session {
 public:
    /// Opens or creates the SQLite file at `path`, with a busy timeout of 60 s.
    ///
    /// @param path  any file name, taken literally and at once made absolute; ":memory:" gives a
    ///              database in memory
    /// @return a session; one that is not good when the file cannot be opened or the path is empty
    ///         or holds a NUL. Such a session stays so. Never throws for these.
    static Session SQLite(const std::string& path);

    ///@{
    /// No moving: a session that was moved from would have no connection to ask.
    Session(const Session&) = default;
    Session& operator=(const Session&) = default;
    ///@}

    /// True when the connection is usable: it was opened, not disconnected, and not lost in
    /// reopening. A lost one tries again here. Costs nothing otherwise.
    bool Good() const;

    /// Runs one statement to its end and drops the rows that it may yield.
    ///
    /// @return true on success; false, and nothing done, on an error, on a session that is not
    ///         good, for a text without a statement and for a text with more than one. Never
    ///         throws.
    bool RawQuery(const std::string& statement);

    /// The SOCI session of the connection. Owned by the connection and the same object for its
    /// whole life; fetch it anew for each piece of work, since fetching is what looks for a moved
    /// file. Its operations throw soci::soci_error when the session is not good.
    soci::session& GetRawSession();

    /// A statement of the raw session that is prepared at its first use and kept for the next ones,
    /// as preparing takes longer than inserting a row. Looks for a moved file as GetRawSession
    /// does.
    ///
    /// @param text  the statement; kept by it, so few different ones
    /// @return owned by the connection, and gone as soon as that reopens its path or closes: fetch
    ///         it anew for each run. Elements and bindings of the last run are still on it.
    ///         soci::soci_error when it cannot be prepared
    KeptStatement& Kept(const std::string& text);

    /// Drops a kept statement, such as one whose run failed; does nothing where there is none.
    void DropStatement(const std::string& text);

    /// Closes the connection, for all copies and for good. Does nothing when it is closed already.
    /// Queries on it fetch nothing more; statements made on the raw session must be gone.
    void Disconnect();

 private:
    explicit Session(std::shared_ptr<Connection> connection);

    std::shared_ptr<Connection> connection_;
};

}  // namespace merodbquery
