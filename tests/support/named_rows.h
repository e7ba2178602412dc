#pragma once

#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/securitylog/security_log_db.h>

#include <ctime>
#include <string>

namespace test {

/// A store's table and a text column of it that tests tell rows by.
template <class DB>
struct RowsOf;

template <>
struct RowsOf<serverlog::db::AdminLogDB> {
    static constexpr char kTable[] = "admin_log";
    static constexpr char kName[] = "statement";
    static constexpr char kOther[] = "tab_type, user, uid, ip, server, webapi_param";
    static constexpr char kValues[] = "1, 'admin', 1024, '', '', 'null'";
};

template <>
struct RowsOf<serverlog::db::MailLogDB> {
    static constexpr char kTable[] = "mail_log_table";
    static constexpr char kName[] = "subject";
    static constexpr char kOther[] = "size, status";
    static constexpr char kValues[] = "100, 0";
};

template <>
struct RowsOf<serverlog::db::SecurityLogDB> {
    static constexpr char kTable[] = "security_log_table";
    static constexpr char kName[] = "subject";
    static constexpr char kOther[] = "type";
    static constexpr char kValues[] = "'spam'";
};

/// The statement that adds a row with this name and date.
template <class DB>
std::string InsertRow(const std::string& name, std::time_t date) {
    using Rows = RowsOf<DB>;
    return std::string("INSERT INTO ") + Rows::kTable + " (" + Rows::kName + ", date, " +
           Rows::kOther + ") VALUES ('" + name + "', " + std::to_string(date) + ", " +
           Rows::kValues + ");";
}

/// The query of all names, in their order.
template <class DB>
std::string SelectNames() {
    using Rows = RowsOf<DB>;
    return std::string("SELECT ") + Rows::kName + " FROM " + Rows::kTable + " ORDER BY 1;";
}

}  // namespace test
