#include <mailserver-log/log/adminlog/logger/flags.h>

#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog {

Json::Value DownloadFlag(Json::Value const& /*params*/) {
    Json::Value info;
    info["force_log"] = true;
    return info;
}

Json::Value UploadFlag(Json::Value const& params) {
    Json::Value info;
    info["force_log"] = true;
    info["name"] = GetKeyVal(params, "name");
    return info;
}

}  // namespace serverlog::log::adminlog
