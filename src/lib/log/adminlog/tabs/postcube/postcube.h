#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The web mail client.
namespace serverlog::log::adminlog::postcube {

/// The settings. Throws Exception<ETag::SDK> when the web API fails.
InfoSignature SettingsInfo;

/// Changed settings: label, old, new; and, by template, what became of the custom logo.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::postcube
