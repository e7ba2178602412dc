#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The statements of the domain page. Every "domain's name" is that of the old state.
namespace serverlog::log::adminlog::domain {

/// The address pattern in words: nickname, account name or, for any other text, a custom one.
FormatSignature AliasPatternText;

/// Changed settings: label, domain's name, old, new.
TranslateSignature TranslateEdit;

/// Changed DKIM settings: label, domain's name, old, new.
TranslateSignature TranslateDkimEdit;

/// The name of each domain in "domain_ids" that the old state of DomainInfo knows.
TranslateSignature TranslateDel;

/// The name of the domain "domain_id", if the old state of DomainInfo knows it.
TranslateSignature TranslateSetPrimary;

/// Each of "additional_domains" with the domain's name, for those created and those deleted.
TranslateSignature TranslateAdditionalOperation;

/// Pairs of "org_additional_domains" and "new_additional_domains" up to the shorter list's end: old
/// text, domain's name, new text.
TranslateSignature TranslateAdditionalEdit;

/// The label of the DKIM key and the domain's name.
TranslateSignature TranslateGenerateDkimKey;

}  // namespace serverlog::log::adminlog::domain
