#pragma once

#include <mailserver-log/export.h>

#include <json/value.h>

namespace serverlog::log::adminlog {

/// An InfoFunction for downloads, which are logged even when the call fails: an object with
/// "force_log" true, whatever `params` holds.
MAILSERVER_LOG_EXPORT Json::Value DownloadFlag(Json::Value const& params);

/// An InfoFunction for uploads: an object with "force_log" true and "name" as in `params`, or the
/// empty string when there is no such text.
MAILSERVER_LOG_EXPORT Json::Value UploadFlag(Json::Value const& params);

}  // namespace serverlog::log::adminlog
