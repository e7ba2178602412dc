#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The report that is sent at a time of day.
namespace serverlog::log::adminlog::logreport {

/// The settings. Throws Exception<ETag::SDK> when the web API fails.
InfoSignature ReportInfo;

/// Changed settings: label, old, new. The time, of "report_hours" and "report_mins", is one of
/// them.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::logreport
