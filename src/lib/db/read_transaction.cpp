#include "db/read_transaction.h"

namespace serverlog::db {

ReadTransaction::ReadTransaction(merodbquery::Session& session)
    : session_(session), begun_(session.RawQuery("BEGIN")) {}

ReadTransaction::~ReadTransaction() {
    if (begun_) {
        session_.RawQuery("COMMIT");
    }
}

}  // namespace serverlog::db
