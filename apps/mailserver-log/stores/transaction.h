#pragma once

#include <merodbquery/session.h>

namespace serverlog::program {

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
