#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The settings of the content scan.
namespace serverlog::log::adminlog::contentscan {

/// The settings as "content_scan". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature ContentScanInfo;

/// The change map of the settings.
DiffSignature DiffContentScan;

/// What is done with an HTML tag, in words; empty for any other value.
FormatSignature TagText;

/// Changed settings: label, old, new.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::contentscan
