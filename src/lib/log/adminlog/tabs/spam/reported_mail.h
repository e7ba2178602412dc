#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Mails that users reported as spam or ham, and what is learned from them. The info functions
/// throw Exception<ETag::SDK> when the web API fails.
namespace serverlog::log::adminlog::spam {

/// The reported spam mail that the request's "mail_uid" names, with "force_log".
InfoSignature SpamMailInfo;

/// The reported ham mail that the request's "mail_uid" names, with "force_log".
InfoSignature HamMailInfo;

/// The number of mails in "mail_uid_list"; none when there are no mails.
TranslateSignature TranslateAutoLearnMailOperation;

/// The search condition "keyword".
TranslateSignature TranslateAutoLearnMailLearnAll;

/// The name of the attachment that "attachment_id" names, or that ID where the mail has no such
/// attachment; the mail's sender and subject.
TranslateSignature TranslateAutoLearnAttachDownload;

/// The mail's sender and subject.
TranslateSignature TranslateAutoLearnAllAttachDownload;

}  // namespace serverlog::log::adminlog::spam
