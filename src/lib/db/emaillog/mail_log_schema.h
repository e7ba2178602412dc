#pragma once

#include "db/table_schema.h"

namespace serverlog::db::emaillog {

inline constexpr internal::SchemaColumn kColumns[] = {
    {"message_id", "TEXT", 1},  {"queue_id", "TEXT", 1}, {"date", "INTEGER", 1},
    {"mail_from", "TEXT", 1},   {"mail_to", "TEXT", 1},  {"size", "INTEGER", 1},
    {"status", "INTEGER", 1},   {"host", "TEXT", 1},     {"subject", "TEXT", 3},
    {"ori_mail_to", "TEXT", 4},
};

inline constexpr internal::SchemaIndex kIndices[] = {
    {"mail_log_table_message_id_idx", "message_id", 2},
    {"mail_log_table_date_idx", "date", 2},
    {"mail_log_table_mail_from_idx", "mail_from", 2},
    {"mail_log_table_mail_to_idx", "mail_to", 2},
    {"mail_log_table_size_idx", "size", 2},
    {"mail_log_table_status_idx", "status", 2},
    {"mail_log_table_subject_idx", "subject", 3},
    {"mail_log_table_ori_mail_to_idx", "ori_mail_to", 4},
};

/// The table mail_log_table.
inline constexpr internal::TableSchema kSchema("mail_log_table", kColumns, kIndices);

}  // namespace serverlog::db::emaillog
