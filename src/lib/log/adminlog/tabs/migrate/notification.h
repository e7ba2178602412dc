#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Who is told of a migration task's end: "success_notify" and "error_notify", with like members.
namespace serverlog::log::adminlog::migrate {

/// The two. Throws Exception<ETag::SDK> when the web API fails.
InfoSignature NotifyInfo;

/// The change map of each under its name.
DiffSignature DiffNotify;

/// Changed settings of one of the two, by template: label, task's name, old, new.
TranslateSignature TranslateNotifyEdit;

}  // namespace serverlog::log::adminlog::migrate
