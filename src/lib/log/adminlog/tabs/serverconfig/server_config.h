#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The configuration of the servers that mail is migrated from.
namespace serverlog::log::adminlog::serverconfig {

/// The name of the "file".
TranslateSignature TranslateImport;

}  // namespace serverlog::log::adminlog::serverconfig
