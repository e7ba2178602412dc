#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The quarantine of the MCP page. The info functions throw Exception<ETag::SDK> when the web API
/// fails. Downloads are put into words by the functions of the antivirus quarantine.
namespace serverlog::log::adminlog::mcp {

/// The mails by "mail_uid" as "indexed_mails".
InfoSignature QuarantineInfo;

/// The mail that the request's "mail_uid" names, with "force_log".
InfoSignature DownloadAttachInfo;

/// Sender, subject and time of each mail of "mail_uid_list" that is known.
TranslateSignature TranslateQuarantineOperation;

}  // namespace serverlog::log::adminlog::mcp
