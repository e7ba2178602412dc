#pragma once

#include <merodbquery/session.h>

namespace serverlog::program {

/// Lets the pages that a transaction changes stay in memory until it ends, up to 32 MiB.
///
/// With SQLite's own 2 MiB a batch of some hundred rows overflows, as each row changes a page of
/// nearly every index, and from then until the commit is done nobody can read.
inline void KeepChangesInMemory(merodbquery::Session& session) {
    session.RawQuery("PRAGMA main.cache_size = -32768");
}

/// A transaction. It is rolled back at the end of its scope unless it was committed.
class Transaction {
 public:
    enum class Use {
        kWrite,  ///< waits for its turn to write at once
        kRead,   ///< sees one picture of each file, from the first statement on
    };

    /// Begins it.
    ///
    /// @param session  must outlive this object
    ///
    /// Throws soci::soci_error if SQLite refuses, for instance since the file is busy for too long.
    explicit Transaction(merodbquery::Session& session, Use use = Use::kWrite);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Commits. Throws soci::soci_error if that fails; nothing of the transaction is in the file
    /// then, for what is still open is rolled back at the end of the scope.
    void Commit();

 private:
    merodbquery::Session& session_;
    bool committed_ = false;
};

}  // namespace serverlog::program
