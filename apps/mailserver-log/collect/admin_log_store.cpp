#include "collect/admin_log_store.h"

#include <mailserver-log/db/provider.h>

#include <chrono>

#include "process/failure.h"
#include "stores/store_check.h"
#include "stores/stores.h"
#include "stores/transaction.h"

namespace serverlog::program {

namespace {

// Short, so that a store that is busy for long does not keep the collector from seeing a request to
// stop; whoever calls tries again anyway.
constexpr std::chrono::milliseconds kPatience{1000};

}  // namespace

void AdminLogStore::Insert(const std::vector<record::AdminLog>& records) {
    if (records.empty()) {
        return;
    }
    if (!store_) {
        Open();
    }
    try {
        InsertWhole(records);
    } catch (...) {
        // The session follows its path. If nothing is there it makes an empty file, which has to
        // be opened as a new store. An open store, though, is kept through any other trouble:
        // opening looks at the version, and a store that is locked does not tell it.
        if (!store_->GetSession().Good() || store_->GetVersion() == 0) {
            store_.reset();
        }
        throw;
    }
}

// Not the session that the process shares: if that can't be opened once, it never can.
void AdminLogStore::Open() {
    CheckStore(AdminStore::kPath, kPatience);
    store_.emplace(db::Provider(AdminStore::kPath).Get<db::AdminLogDB>(false));
}

void AdminLogStore::InsertWhole(const std::vector<record::AdminLog>& records) {
    store_->GetSession().RawQuery("PRAGMA busy_timeout = " + std::to_string(kPatience.count()));
    db::AdminLogTable& table = store_->MainTable();
    Transaction transaction(store_->GetSession());
    for (const record::AdminLog& record : records) {
        if (!table.Create(record)) {
            throw Failure("the store does not take a row: " + table.LastError());
        }
    }
    transaction.Commit();
}

}  // namespace serverlog::program
