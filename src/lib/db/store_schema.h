#pragma once

#include <mailserver-log/db/store_traits.h>

#include "db/adminlog/admin_log_schema.h"
#include "db/emaillog/mail_log_schema.h"
#include "db/securitylog/security_log_schema.h"
#include "db/table_schema.h"

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

}  // namespace serverlog::db::internal
