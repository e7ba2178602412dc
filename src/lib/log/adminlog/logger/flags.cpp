#include <mailserver-log/log/adminlog/logger/flags.h>

#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog {

Json::Value DownloadFlag(Json::Value const& /*params*/) {
    Json::Value info;
    info["force_log"] = true;
    return info;
}

Json::Value UploadFlag(Json::Value const& params) {
    Json::Value info;
    info["force_log"] = true;
    info["name"] = TryGetKeyVal(params, "name");
    return info;
}

}  // namespace serverlog::log::adminlog
