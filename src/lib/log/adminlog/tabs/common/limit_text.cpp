#include "log/adminlog/tabs/common/limit_text.h"

#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog {

namespace {

std::string LimitText(std::string const& limit, char const* unit) {
    return limit == "0" ? LabelText(Label{"account", "unlimited"}) : limit + unit;
}

}  // namespace

std::string SizeLimitText(std::string const& member, Json::Value const& object) {
    return LimitText(GetKeyVal(object, member), " MB");
}

std::string CountLimitText(std::string const& member, Json::Value const& object) {
    return LimitText(GetKeyVal(object, member), "");
}

}  // namespace serverlog::log::adminlog
