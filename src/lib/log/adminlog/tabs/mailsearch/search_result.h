#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The mails that a search task found.
namespace serverlog::log::adminlog::mailsearch {

/// The mail "mail_id" of the task "task_id". Throws Exception<ETag::Log> when the request lacks one
/// of the two and Exception<ETag::SDK> when the web API fails.
InfoSignature MailInfo;

/// MailInfo with "force_log", since downloads are logged in any case.
InfoSignature DownloadMail;

/// How many mails were deleted or exported, and the task's name. The number is that of "mail_ids".
/// Without them, for all mails of a task, it is "num_deleted_mail" of the response's "result", or
/// what "num_failed_mail" leaves of its "num_mails"; without any of these there is no statement.
TranslateSignature TranslateResultOperation;

/// A downloaded mail, by template with one of its attachments in front: the name of the attachment
/// "attachment_id", or that ID when the mail has no such attachment; subject, recipient, time.
TranslateSignature TranslateMailOperation;

}  // namespace serverlog::log::adminlog::mailsearch
