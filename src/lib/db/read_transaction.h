#pragma once

#include <merodbquery/session.h>

namespace serverlog::db {

/// Keeps a scope of reads on one picture of each file of a session: the first read of a file fixes
/// what all later ones see of it, and the session stays on files that are renamed meanwhile.
///
/// Writers wait for its end, as they do for a single statement that reads. Where a transaction is
/// open already the scope belongs to that one.
class ReadTransaction {
 public:
    /// @param session  must outlive this object
    explicit ReadTransaction(merodbquery::Session& session);

    /// Statements of the scope that are unfinished make no difference.
    ~ReadTransaction();

    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;

 private:
    merodbquery::Session& session_;
    bool begun_;
};

}  // namespace serverlog::db
