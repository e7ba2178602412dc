#include "log/adminlog/toolkit/formatting.h"

#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog {

namespace {

bool IsFalse(std::string const& key, Json::Value const& object) {
    return GetKeyVal(object, key) == "false";
}

}  // namespace

std::string IsBoolEnable(bool value) {
    return value ? "enabled" : "disabled";
}

std::string IsEnable(std::string const& key, Json::Value const& object) {
    return IsBoolEnable(!IsFalse(key, object));
}

std::string IsYesNo(std::string const& key, Json::Value const& object) {
    return IsFalse(key, object) ? "No" : "Yes";
}

std::string Time00Format(int value) {
    std::string const text = std::to_string(value);
    return value >= 0 && value <= 9 ? "0" + text : text;
}

}  // namespace serverlog::log::adminlog
