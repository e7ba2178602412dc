#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

#include "mail_events/sip_hash.h"

namespace serverlog::program {

/// The state file with the mail and the security store attached to it, on one connection, so that a
/// transaction changes all three or none. SQLite grants that only where none of them is in WAL
/// mode and all keep a journal on the disk (https://sqlite.org/lang_attach.html), so that is how
/// they are opened.
class MailEventFiles {
 public:
    /// The names of the stores on the connection.
    static constexpr char kMail[] = "mail_store";
    static constexpr char kSecurity[] = "security_store";

    /// Opens them; makes those that are missing.
    ///
    /// @param new_key  the key for a state file that is made
    ///
    /// Throws what opening a store throws (see db::Provider), soci::soci_error or
    /// std::runtime_error if one is busy or can't be read, Failure if the state file is of a newer
    /// release or there is no room.
    explicit MailEventFiles(const SipKey& new_key);

    sqlite3* Handle() const { return handle_.get(); }

    /// Runs statements that give nothing. Throws std::runtime_error with SQLite's reason.
    void Run(const std::string& script) const;

    /// Whether all three files are still where they were opened.
    bool InPlace() const;

    const std::string& MailTable() const { return mail_table_; }
    const std::string& SecurityTable() const { return security_table_; }

 private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };

    void MakeTables(const SipKey& new_key);
    void Attach(const std::string& path, const std::string& name) const;
    void KeepJournal(const std::string& name) const;

    std::string mail_table_;
    std::string security_table_;
    std::unique_ptr<sqlite3, Close> handle_;
};

}  // namespace serverlog::program
