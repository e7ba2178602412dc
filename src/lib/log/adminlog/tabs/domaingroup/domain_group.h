#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The groups of a domain.
namespace serverlog::log::adminlog::domaingroup {

/// The record of the domain "domain_id" with its groups added as "groups", by "id"; null when the
/// request names no domain. Throws Exception<ETag::SDK> when a web API fails.
InfoSignature GroupInfo;

/// The change map of the group that the request's "id" names; null when the old state lacks it.
DiffSignature DiffGroup;

/// The role in words; empty for an unknown one.
FormatSignature RoleText;

/// The name of each group in "ids", which are group numbers of the system, with the domain's name.
TranslateSignature TranslateDel;

/// Changed settings: label, group's name, domain's name, old, new.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::domaingroup
