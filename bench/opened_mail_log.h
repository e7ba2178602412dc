#pragma once

#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>

#include <string>

#include "stores.h"

namespace bench {

/// The mail log store at a path in the spool.
inline serverlog::db::MailLogDB OpenMailLog(const std::string& path) {
    return serverlog::db::Provider(path).Get<serverlog::db::MailLogDB>(false);
}

/// The store together with its long-term file.
inline serverlog::db::MailLogDB OpenBothMailLogs() {
    auto store = OpenMailLog(kCurrentPath);
    store.Attach(kLongTermPath, "DB1");
    return store;
}

}  // namespace bench
