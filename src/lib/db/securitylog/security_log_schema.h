#pragma once

#include "db/table_schema.h"

namespace serverlog::db::securitylog {

inline constexpr internal::SchemaColumn kColumns[] = {
    {"date", "INTEGER", 1}, {"src", "TEXT", 1},    {"type", "TEXT", 1},      {"event", "TEXT", 1},
    {"host", "TEXT", 1},    {"sender", "TEXT", 3}, {"recipient", "TEXT", 3}, {"subject", "TEXT", 4},
};

inline constexpr internal::SchemaIndex kIndices[] = {
    {"security_log_table_date_idx", "date", 2},
    {"security_log_table_src_idx", "src", 2},
    {"security_log_table_type_idx", "type", 2},
    {"security_log_table_sender_idx", "sender", 3},
    {"security_log_table_recipient_idx", "recipient", 3},
    {"security_log_table_subject_idx", "subject", 4},
};

/// The table security_log_table.
inline constexpr internal::TableSchema kSchema("security_log_table", kColumns, kIndices);

}  // namespace serverlog::db::securitylog
