#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// What the domain pages load before a call. All but ThisDomainName read a web API of this machine
/// and throw Exception<ETag::SDK> when that fails.
namespace serverlog::log::adminlog::domain {

/// All domains: "domain_id" to the domain's record.
InfoSignature DomainInfo;

/// The record of the domain that the parameter "domain_id" names; null when there is none.
InfoSignature ThisDomainInfo;

/// An object with the "name" of the domain that the parameter "domain_id" names, from the mail
/// server's settings instead of a web API; null after an error line when it cannot be found.
InfoSignature ThisDomainName;

/// The DKIM settings of the domain "domain_id": "name", "enable_dkim_sign", "dkim_selector".
InfoSignature DkimInfo;

/// Usage limits and advanced settings of the domain "domain_id", the limits nested as in
/// "flow":{"enable":…,"setting":…}.
InfoSignature UsageInfo;

}  // namespace serverlog::log::adminlog::domain
