#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The general settings of SMTP. Info functions throw Exception<ETag::SDK> when the web API fails.
namespace serverlog::log::adminlog::smtpgeneral {

/// The settings.
InfoSignature SmtpInfo;

/// Changed settings: label, old, new.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::smtpgeneral
