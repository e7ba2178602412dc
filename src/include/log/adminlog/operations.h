#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/log/adminlog/logger/logger_config.h>

namespace serverlog::log::adminlog {

/// `LoggerConfig Get_<key>_Config()` for each operation of the table: builds the operation's rules
/// afresh, reads no state, and may be called by several threads at once. GetConfig finds them by
/// key.
#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...) \
    MAILSERVER_LOG_EXPORT LoggerConfig Get_##key##_Config();
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION

}  // namespace serverlog::log::adminlog
