#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The rules that filter mails by address. A rule has "type" (sender or recipient), "pattern" and
/// "action" (spam or non_spam); a statement shows it by these three, type and action in words.
namespace serverlog::log::adminlog::spam {

/// The type of a rule in words; empty for any other value.
FormatSignature FilterTypeText;

/// The action of a rule in words; empty for any other value.
FormatSignature FilterActionText;

/// Each of the new rules in "filter_list".
TranslateSignature TranslateAddFilter;

/// Each of the rules in "delete_list".
TranslateSignature TranslateDelFilter;

/// The rule before, from "org_type", "org_pattern" and "org_action", and after; none when both read
/// the same.
TranslateSignature TranslateEditFilter;

/// The list that was imported, black or white by "action", and the name of the "file".
TranslateSignature TranslateImportFilter;

/// The statement as it stands.
TranslateSignature TranslateExportFilter;

}  // namespace serverlog::log::adminlog::spam
