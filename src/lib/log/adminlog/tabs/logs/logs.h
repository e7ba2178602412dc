#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Exports of the three logs: the log's name.
namespace serverlog::log::adminlog::logs {

/// The admin log.
TranslateSignature TranslateAdminLogExport;

/// The mail log.
TranslateSignature TranslateMailLogExport;

/// The security log.
TranslateSignature TranslateSecurityLogExport;

}  // namespace serverlog::log::adminlog::logs
