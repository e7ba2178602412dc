#pragma once

#include "db/table_schema.h"

namespace serverlog::db::adminlog {

inline constexpr internal::SchemaColumn kColumns[] = {
    {"tab_type", "INTEGER NOT NULL", 1},
    {"statement", "TEXT", 1},
    {"user", "TEXT NOT NULL", 1},
    {"uid", "BIGINT NOT NULL", 1},
    {"date", "BIGINT NOT NULL", 1},
    {"ip", "TEXT", 1},
    {"server", "TEXT", 1},
    {"webapi_param", "TEXT", 1},
};

inline constexpr internal::SchemaIndex kIndices[] = {
    {"tab_type_idx", "tab_type", 1},
    {"statement_idx", "statement", 1},
    {"user_idx", "user", 1},
    {"date_idx", "date", 1},
    {"ip_idx", "ip", 1},
    {"server_idx", "server", 1},
};

/// The table admin_log. Versions 1 to 3 had a column id besides, versions 1 and 2 a column webapi
/// too; the steps that made and removed these name them.
inline constexpr internal::TableSchema kSchema("admin_log", kColumns, kIndices);

}  // namespace serverlog::db::adminlog
