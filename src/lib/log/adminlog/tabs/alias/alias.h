#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The aliases of a domain. A request names its alias in "alias" and members in "members", each
/// with "type" (user, group or external) and "name" or, for users and groups, the system's "id".
namespace serverlog::log::adminlog::alias {

/// The record of the domain "domain_id" with "force_log", since exports are logged in any case.
/// Throws Exception<ETag::SDK> when the web API fails.
InfoSignature Download;

/// Each of "aliases" with the domain's name.
TranslateSignature TranslateDel;

/// Each of "members" that left the alias: kind, name, alias, domain's name.
TranslateSignature TranslateDelMember;

/// The domain's name.
TranslateSignature TranslateExport;

/// The name of the "file" and the domain's name.
TranslateSignature TranslateImport;

/// A new alias, each of "members" that joined it, and a new name, by template. "org_alias" is the
/// name before the call; without it the alias is a new one.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::alias
