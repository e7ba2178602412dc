#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The policies of users and groups. Info functions throw Exception<ETag::SDK> when the web API
/// fails.
namespace serverlog::log::adminlog::userpolicy {

/// All policies by "id".
InfoSignature PolicyInfo;

/// The record of the policy that the request's "id" names.
InfoSignature PolicyEditInfo;

/// The change map of a policy, in which the order of its members does not count.
DiffSignature DiffPolicy;

/// The name of each policy in "ids" that the old state of PolicyInfo knows.
TranslateSignature TranslateDeletedPolicyName;

/// Changed settings, changed members and a new name, by template.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::userpolicy
