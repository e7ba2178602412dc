#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/log/upgrade/upgrader.h>
#include <mailserver-log/utils/error_line.h>

#include <string>

#include "utils/files.h"
#include "utils/merosdk/file_lock_guard.h"

namespace serverlog::log::upgrade {

namespace {

template <class DB>
bool UpgradeFile(const std::string& path) {
    try {
        if (utils::Exist(path)) {
            db::Provider provider(path);
            provider.Get<DB>(false);  // brings the schema up to date
        }
        return true;
    } catch (...) {
        SERVERLOG_ERROR_LINE("failed to upgrade db: %s", path.c_str());
        return false;
    }
}

}  // namespace

template <class DB>
Upgrader<DB>::Upgrader() = default;

template <class DB>
Upgrader<DB>::~Upgrader() = default;

template <class DB>
bool Upgrader<DB>::Upgrade() {
    using Traits = db::StoreTraits<DB>;
    const utils::FileLockGuard lock(Traits::kOperationLock);
    bool done = true;
    for (const char* path : {Traits::kPath, Traits::kMainPath, Traits::kArchivePath}) {
        done = UpgradeFile<DB>(path) && done;
    }
    return done;
}

template class Upgrader<db::AdminLogDB>;
template class Upgrader<db::MailLogDB>;
template class Upgrader<db::SecurityLogDB>;

}  // namespace serverlog::log::upgrade
