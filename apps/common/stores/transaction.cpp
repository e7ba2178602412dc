#include "stores/transaction.h"

#include <soci/soci.h>

namespace serverlog::program {

Transaction::Transaction(merodbquery::Session& session, Use use) : session_(session) {
    session_.GetRawSession() << (use == Use::kWrite ? "BEGIN IMMEDIATE" : "BEGIN");
}

Transaction::~Transaction() {
    if (!committed_) {
        // After some failures SQLite has rolled back by itself, and then this one fails.
        session_.RawQuery("ROLLBACK");
    }
}

void Transaction::Commit() {
    session_.GetRawSession() << "COMMIT";
    committed_ = true;
}

}  // namespace serverlog::program
