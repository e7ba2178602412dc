#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The greylist. A request holds the whole list of rules as "rule_list", each with "target", "type"
/// and "action".
namespace serverlog::log::adminlog::spam {

/// The settings, and the rules by "target" as "indexed_rules". Throws Exception<ETag::SDK> when the
/// web API fails.
InfoSignature GreylistInfo;

/// The change map of the settings with the difference of the list of rules (list_diff.h).
DiffSignature DiffGreylist;

/// What is done with a mail, in words; empty for any other value.
FormatSignature GreylistActionText;

/// By template: each rule that came or went; changed default settings; the changed action or type
/// of a rule. A statement names a rule by type and target, since these say which mails it is for;
/// when the type changes, by the old one.
TranslateSignature TranslateGreylistOperation;

}  // namespace serverlog::log::adminlog::spam
