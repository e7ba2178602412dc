#include "log/adminlog/tabs/common/moment_text.h"

#include "log/adminlog/toolkit/reading.h"
#include "utils/time.h"

namespace serverlog::log::adminlog {

std::string MomentText(std::string const& member, Json::Value const& object) {
    Json::Value const moment = GetObjectVal(object, member);
    return moment.isInt64() ? utils::ConvertToTimeString(moment.asInt64())
                            : GetKeyVal(object, member);
}

}  // namespace serverlog::log::adminlog
