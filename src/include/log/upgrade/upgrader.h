#pragma once

#include <mailserver-log/export.h>

namespace serverlog::db {
class AdminLogDB;
class MailLogDB;
class SecurityLogDB;
}  // namespace serverlog::db

namespace serverlog::log::upgrade {

/// Brings all files of a log store to the newest schema: the current, the long-term and the archive
/// file. For a new release of the product; files that are there already stay as they are.
///
/// Instances exist for AdminLogDB, MailLogDB and SecurityLogDB. Processes may upgrade at the same
/// time.
template <class DB>
class MAILSERVER_LOG_EXPORT Upgrader {
 public:
    Upgrader();
    ~Upgrader();

    /// Upgrades once. Waits for the store's operation lock without a limit. A file that does not
    /// exist is not made.
    ///
    /// @return true when every file that exists is at the newest schema, or at that of a newer
    ///         release. False, with an error line each, when one could not be brought there; the
    ///         others were all the same.
    ///
    /// Throws Exception<ETag::SDK> when the lock can't be had.
    bool Upgrade();
};

extern template class Upgrader<db::AdminLogDB>;
extern template class Upgrader<db::MailLogDB>;
extern template class Upgrader<db::SecurityLogDB>;

}  // namespace serverlog::log::upgrade
