#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Mailboxes and their quotas. A request names users in "users" and groups in "groups", each by the
/// system's number or by a name. "quota" and "remaining_capacity" are sizes in MB; 0 means no limit
/// and no notification.
namespace serverlog::log::adminlog::account {

/// The system's settings: "enable_quota", "quota", "enable_remaining_capacity",
/// "remaining_capacity". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature SystemQuotaInfo;

/// The remaining capacity at which a user is told, in MB with its unit; "disabled" for 0.
FormatSignature RemainingCapacityText;

/// Each user whose quota was cleared: "user" and the name.
TranslateSignature TranslateClearUserQuota;

/// Each group whose quota was cleared: "group" and the name.
TranslateSignature TranslateClearGroupQuota;

/// Each user with what the request sets, by template: "user", name, value.
TranslateSignature TranslateSetUserQuota;

/// Each group with what the request sets, by template: "group", name, value.
TranslateSignature TranslateSetGroupQuota;

/// Changed settings of the system: label, old, new. A size that the old state lacks, so that there
/// is no old value to show, has a template of its own.
TranslateSignature TranslateSetSystemQuota;

/// Each user whose mailbox was cleared: "user" and the name.
TranslateSignature TranslateClearMaildir;

/// Each of "mailboxes", named after users who are gone: "former user" and the name.
TranslateSignature TranslateDeleteNoOwner;

}  // namespace serverlog::log::adminlog::account
