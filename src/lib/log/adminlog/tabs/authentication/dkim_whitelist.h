#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The senders that are trusted without a DKIM signature: "pattern" is an address, "description" a
/// name. A statement names a sender by both, as they were before the call.
namespace serverlog::log::adminlog::authentication {

/// The senders by "id" as "indexed_senders". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature DkimInfo;

/// Those of the request's "edit_list" that differ from the sender of the same "id" (list_diff.h).
DiffSignature DiffDkimWhitelist;

/// Each of the new senders in "create_list".
TranslateSignature TranslateDkimWhitelistAdd;

/// Each sender that "delete_list" names by "id" and that is known.
TranslateSignature TranslateDkimWhitelistDel;

/// The changed fields of each sender.
TranslateSignature TranslateDkimWhitelistEdit;

}  // namespace serverlog::log::adminlog::authentication
