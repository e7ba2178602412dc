#include "mail_events/mail_event_files.h"

#include <mailserver-log/db/provider.h>

#include <chrono>
#include <stdexcept>

#include "mail_events/state_file.h"
#include "process/failure.h"
#include "stores/statement.h"
#include "stores/store_check.h"
#include "stores/stores.h"

namespace serverlog::program {

namespace {

// As short as that of the collector of the admin log, for the same reason.
constexpr std::chrono::milliseconds kPatience{1000};

// Enough for the inner pages of all indices of a large store, in KiB.
constexpr int kStoreCache = 8192;

// Makes a store that is missing and brings an older one up to date. Returns its table.
template <class Store>
std::string Prepare() {
    CheckStore(Store::kPath, kPatience);
    db::Provider provider(Store::kPath);
    return provider.Get<typename Store::DB>(false).RotateTable();
}

bool HasMoved(sqlite3* handle, const char* name) {
    int moved = 0;
    return sqlite3_file_control(handle, name, SQLITE_FCNTL_HAS_MOVED, &moved) != SQLITE_OK ||
           moved != 0;
}

}  // namespace

void MailEventFiles::Close::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

MailEventFiles::MailEventFiles(const SipKey& new_key)
    : mail_table_(Prepare<MailStore>()), security_table_(Prepare<SecurityStore>()) {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(state_file::kPath.c_str(), &handle,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    handle_.reset(handle);
    if (result != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(handle));
    }
    sqlite3_busy_timeout(handle, static_cast<int>(kPatience.count()));
    KeepJournal("main");
    MakeTables(new_key);
    Attach(MailStore::kPath, kMail);
    Attach(SecurityStore::kPath, kSecurity);
}

void MailEventFiles::Run(const std::string& script) const {
    if (sqlite3_exec(Handle(), script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(Handle()));
    }
}

bool MailEventFiles::InPlace() const {
    return !HasMoved(Handle(), "main") && !HasMoved(Handle(), kMail) &&
           !HasMoved(Handle(), kSecurity);
}

void MailEventFiles::MakeTables(const SipKey& new_key) {
    Run("BEGIN IMMEDIATE");
    Statement version(Handle(), "PRAGMA user_version");
    version.Next();
    const long long found = version.Number(0);
    version.Reset();
    if (found > state_file::kVersion) {
        throw Failure(state_file::kPath + " is of version " + std::to_string(found) +
                      ", which this release does not know; install the newer release again");
    }
    if (found == 0) {
        Run(state_file::kCreateScript);
        Statement key(Handle(),
                      "INSERT INTO total (name, value) VALUES ('key_0', ?), ('key_1', ?)");
        key.Bind(1, static_cast<long long>(new_key[0]))
            .Bind(2, static_cast<long long>(new_key[1]))
            .Run();
        Run("PRAGMA user_version = " + std::to_string(state_file::kVersion));
    }
    Run("COMMIT");
}

void MailEventFiles::Attach(const std::string& path, const std::string& name) const {
    Statement attach(Handle(), "ATTACH DATABASE ? AS " + name);
    attach.Bind(1, std::string_view(path)).Run();
    KeepJournal(name);
    Run("PRAGMA " + name + ".cache_size = -" + std::to_string(kStoreCache));
}

void MailEventFiles::KeepJournal(const std::string& name) const {
    Statement mode(Handle(), "PRAGMA " + name + ".journal_mode = DELETE");
    if (!mode.Next() || mode.Text(0) != "delete") {
        throw std::runtime_error("the file is in WAL mode, and another process has it open");
    }
}

}  // namespace serverlog::program
