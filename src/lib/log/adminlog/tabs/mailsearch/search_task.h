#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The tasks that search all mail.
namespace serverlog::log::adminlog::mailsearch {

/// The task that the parameter "id" or else "task_id" names. Throws Exception<ETag::Log> when the
/// request has neither and Exception<ETag::SDK> when the web API fails.
InfoSignature TaskInfo;

/// TaskInfo with "force_log", since downloads are logged in any case.
InfoSignature Download;

/// What was edited of a task, which goes by its old name, by template: its conditions in "filter",
/// its "users", its "name". The order of the users does not count.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::mailsearch
