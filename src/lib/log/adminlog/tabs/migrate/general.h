#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The general settings of a migration task.
namespace serverlog::log::adminlog::migrate {

/// The settings; null without a web API call for a task that the request creates. Throws
/// Exception<ETag::SDK> when the web API fails.
InfoSignature MigrateInfo;

/// By template: the name of a created task; changed settings with the task's old name, those of a
/// "G Suite" task or those of the others by "type" of the request or else of the old state; and a
/// changed name.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::migrate
