#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// How logs are archived, forwarded and rotated.
namespace serverlog::log::adminlog::logmanage {

/// The settings. Throws Exception<ETag::SDK> when the web API fails.
InfoSignature LogConfInfo;

/// A comma list of day numbers from 0 for Sunday, in words; weekend, weekdays and every day have
/// words of their own, but only in the order of the days. What is no day shows as the empty string.
FormatSignature WeekdayText;

/// Changed settings: label, old, new. A change of both hour and minute gives two like rows.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::logmanage
