#pragma once

#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/db/store_traits.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace serverlog::program {

/// The three stores: their name on the command line and their types, with what StoreTraits tells of
/// them.
struct AdminStore : db::StoreTraits<db::AdminLogDB> {
    using DB = db::AdminLogDB;
    static constexpr char kName[] = "admin";
};

struct MailStore : db::StoreTraits<db::MailLogDB> {
    using DB = db::MailLogDB;
    static constexpr char kName[] = "mail";
};

struct SecurityStore : db::StoreTraits<db::SecurityLogDB> {
    using DB = db::SecurityLogDB;
    static constexpr char kName[] = "security";
};

/// Calls `visit` with an object of the store's type. Throws std::invalid_argument for an unknown
/// name.
template <class Visit>
decltype(auto) VisitStore(const std::string& name, Visit&& visit) {
    if (name == AdminStore::kName) {
        return visit(AdminStore());
    }
    if (name == MailStore::kName) {
        return visit(MailStore());
    }
    if (name == SecurityStore::kName) {
        return visit(SecurityStore());
    }
    throw std::invalid_argument("no store is called " + name);
}

}  // namespace serverlog::program
