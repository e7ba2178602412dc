#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The log files. A request names them in "file_list" and their kind in "log_type"; a kind or a
/// source that nobody knows shows as the empty string.
namespace serverlog::log::adminlog::loglist {

/// Each deleted or downloaded file: what "log_src" names, "general" or "forward", kind, file.
TranslateSignature TranslateLogOperation;

/// Each file that a database is made of: the label of that, kind, file.
TranslateSignature TranslateGenerateLogDb;

}  // namespace serverlog::log::adminlog::loglist
