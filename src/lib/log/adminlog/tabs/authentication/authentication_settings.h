#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The checks of a sender's identity.
namespace serverlog::log::adminlog::authentication {

/// The settings as "authentication". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature AuthInfo;

/// The change map of the settings.
DiffSignature DiffAuth;

/// Changed settings: label, old, new.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::authentication
