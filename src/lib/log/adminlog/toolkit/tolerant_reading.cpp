#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog {

Json::Value TryGetObjectVal(Json::Value const& value, std::string const& key) {
    return value.isObject() ? value[key] : Json::Value();
}

std::string TryGetKeyVal(Json::Value const& value, std::string const& key) {
    Json::Value const member = TryGetObjectVal(value, key);
    return member.isObject() || member.isArray() ? std::string() : member.asString();
}

}  // namespace serverlog::log::adminlog
