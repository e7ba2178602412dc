#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The rules of SpamAssassin.
namespace serverlog::log::adminlog::spam {

/// Each of the names in "delete_list".
TranslateSignature TranslateAssassinDelete;

/// Each of "rule_list" by "name", with its old and new status. The request holds the new one as
/// "enabled"; the old one is shown as its opposite, since a request names the rules that were
/// switched. A rule without "enabled" gives none.
TranslateSignature TranslateAssassinEdit;

/// The name of the "file".
TranslateSignature TranslateAssassinImport;

/// The "rule_name".
TranslateSignature TranslateAssassinExport;

}  // namespace serverlog::log::adminlog::spam
