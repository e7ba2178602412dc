#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// What happens to migration tasks as a whole, and their users.
namespace serverlog::log::adminlog::migrate {

/// Each task of "items".
TranslateSignature TranslateDel;

/// Each of "user_list" with the task's name.
TranslateSignature TranslateUserDel;

/// The imported "file" of users and the task's name.
TranslateSignature TranslateUserEdit;

/// The name of the task that was started or stopped, or whose log was exported.
TranslateSignature TranslateMigrateOperation;

}  // namespace serverlog::log::adminlog::migrate
