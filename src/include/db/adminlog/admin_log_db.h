#pragma once

#include <mailserver-log/db/adminlog/admin_log_table.h>
#include <mailserver-log/db/base.h>
#include <mailserver-log/export.h>
#include <merodbquery/session.h>

#include <functional>
#include <string>
#include <vector>

namespace serverlog::db {

/// The admin log store: what administrators did.
class MAILSERVER_LOG_EXPORT AdminLogDB : public BaseDB {
 public:
    /// @param session  as BaseDB takes it
    explicit AdminLogDB(merodbquery::Session& session);

    /// The copy has a table of its own on its own session, which shares the connection.
    AdminLogDB(const AdminLogDB& other);

    std::vector<std::function<bool(merodbquery::Session&)>> UpgradeFuncs() override;
    std::string DbLock() const override;
    std::string RotateTable() const override;
    std::string RotateFields() const override;
    std::string CreateSchema() const override;

    /// The table; valid as long as this object.
    AdminLogTable& MainTable();

 private:
    AdminLogTable table_;
};

}  // namespace serverlog::db
