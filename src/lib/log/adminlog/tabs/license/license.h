#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Licences and the accounts that are activated with them.
namespace serverlog::log::adminlog::license {

/// The activated accounts: "members", each with "id" or "name". Throws Exception<ETag::SDK> when
/// the web API fails.
InfoSignature ActivatedMemberInfo;

/// The name of the "license".
TranslateSignature TranslateActivate;

/// The accounts that the request's "members" add or leave out, by template. The list is the whole
/// one; without the old one nothing is known to have changed.
TranslateSignature TranslateEditMember;

}  // namespace serverlog::log::adminlog::license
