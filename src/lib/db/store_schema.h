#pragma once

#include <mailserver-log/db/store_traits.h>

#include <string>

#include "db/adminlog/admin_log_schema.h"
#include "db/emaillog/mail_log_schema.h"
#include "db/securitylog/security_log_schema.h"
#include "db/table_schema.h"
#include "utils/strings.h"

namespace serverlog::db::internal {

/// The table of a class of stores.
template <class DB>
constexpr const TableSchema& SchemaOf();
template <>
constexpr const TableSchema& SchemaOf<AdminLogDB>() {
    return adminlog::kSchema;
}
template <>
constexpr const TableSchema& SchemaOf<MailLogDB>() {
    return emaillog::kSchema;
}
template <>
constexpr const TableSchema& SchemaOf<SecurityLogDB>() {
    return securitylog::kSchema;
}

/// The script that makes all indices of a class of stores, in a schema of the session.
template <class DB>
std::string CreateScript(const std::string& schema) {
    return utils::Replace(SchemaOf<DB>().CreateAllIndices(), kSchemaPlaceholder, schema);
}

/// The script that drops the indices of a class of stores, in a schema of the session. That on the
/// date stays: whatever is done to many rows at once selects by it.
template <class DB>
std::string DropScript(const DB& db, const std::string& schema) {
    return utils::Replace(SchemaOf<DB>().DropIndicesBut(db.RotateDateFields()), kSchemaPlaceholder,
                          schema);
}

}  // namespace serverlog::db::internal
