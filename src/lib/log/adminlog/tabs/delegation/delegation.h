#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The policies that delegate management to users and groups. Info functions throw
/// Exception<ETag::SDK> when the web API fails.
namespace serverlog::log::adminlog::delegation {

/// All policies by "id".
InfoSignature DelegationInfo;

/// The record of the policy that the request's "id" names.
InfoSignature DelegationEditInfo;

/// The change map of a policy, in which the order of its members does not count.
DiffSignature DiffDelegation;

/// A permission, "none", "read" or "write", in words; empty for any other.
FormatSignature PermissionText;

/// The name of each policy in "ids" that the old state of DelegationInfo knows.
TranslateSignature TranslateDeletedDelegationName;

/// Changed settings, changed members and a new name, by template.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::delegation
