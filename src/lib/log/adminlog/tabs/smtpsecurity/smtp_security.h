#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// What SMTP refuses and how much it takes at a time.
namespace serverlog::log::adminlog::smtpsecurity {

/// The settings. Throws Exception<ETag::SDK> when the web API fails.
InfoSignature SecurityInfo;

/// Changed settings: label, old, new. The label of every switch begins with "Status of ".
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::smtpsecurity
