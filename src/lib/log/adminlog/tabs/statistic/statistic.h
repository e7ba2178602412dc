#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The mail monitor.
namespace serverlog::log::adminlog::statistic {

/// The page's own name.
TranslateSignature TranslateExport;

}  // namespace serverlog::log::adminlog::statistic
