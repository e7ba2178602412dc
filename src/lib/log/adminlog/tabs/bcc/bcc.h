#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The BCC rules of a domain. Info functions throw Exception<ETag::SDK> when a web API fails.
namespace serverlog::log::adminlog::bcc {

/// The record of the domain "domain_id" with "force_log", since exports are logged in any case.
InfoSignature Download;

/// The record of the domain "domain_id" with its rules added as "rules", by "id"; null when the
/// request names no domain.
InfoSignature BccInfo;

/// The change map of the rule that the request's "id" names; null when the old state lacks it.
DiffSignature DiffBcc;

/// The type of a rule, "sender" or "recipient", in words; empty for any other.
FormatSignature RuleTypeText;

/// The mail that a rule takes, "in", "out" or "both", in words; empty for any other.
FormatSignature DirectionText;

/// The created rule "name", or each deleted one of "names", with the domain's name.
TranslateSignature TranslateBccOperation;

/// The name of the "file" and the domain's name.
TranslateSignature TranslateExport;

/// The name of the "file", the "type" of its rules in words, the domain's name.
TranslateSignature TranslateImport;

/// Changed fields of a rule and its new name, by template.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::bcc
