#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The quarantine of infected mails. The info functions throw Exception<ETag::SDK> when the web API
/// fails.
namespace serverlog::log::adminlog::antivirus {

/// The mails by "mail_uid" as "indexed_mails".
InfoSignature QuarantineInfo;

/// The mail that the request's "mail_uid" names, with "force_log".
InfoSignature DownloadAttachInfo;

/// Sender and subject of each mail of "mail_uid_list" that is known.
TranslateSignature TranslateQuarantineOperation;

/// The name of the attachment that "attachment_id" names, or that ID where the mail has no such
/// attachment; the mail's subject, recipient and time. For the MCP quarantine too.
TranslateSignature TranslateDownloadAttach;

/// The mail's subject, recipient and time. For the MCP quarantine too.
TranslateSignature TranslateDownloadAllAttach;

}  // namespace serverlog::log::adminlog::antivirus
