#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Which mails a migration task takes over.
namespace serverlog::log::adminlog::migrate {

/// The filter of the task. Throws Exception<ETag::SDK> when the web API fails.
InfoSignature FilterInfo;

/// Changed settings: label, task's name, old, new.
TranslateSignature TranslateFilterEdit;

}  // namespace serverlog::log::adminlog::migrate
