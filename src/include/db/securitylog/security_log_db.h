#pragma once

#include <mailserver-log/db/base.h>
#include <mailserver-log/db/securitylog/security_log_table.h>
#include <mailserver-log/export.h>
#include <merodbquery/session.h>

#include <functional>
#include <string>
#include <vector>

namespace serverlog::db {

/// The security log store: what was rejected or filtered.
class MAILSERVER_LOG_EXPORT SecurityLogDB : public BaseDB {
 public:
    /// @param session  as BaseDB takes it
    explicit SecurityLogDB(merodbquery::Session& session);

    /// The copy has a table of its own on its own session, which shares the connection.
    SecurityLogDB(const SecurityLogDB& other);

    std::vector<std::function<bool(merodbquery::Session&)>> UpgradeFuncs() override;
    std::string DbLock() const override;
    std::string RotateTable() const override;
    std::string RotateFields() const override;
    std::string CreateSchema() const override;

    /// The table; valid as long as this object.
    SecurityLogTable& MainTable();

 private:
    SecurityLogTable table_;
};

}  // namespace serverlog::db
