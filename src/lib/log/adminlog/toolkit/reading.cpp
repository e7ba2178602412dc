#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog {

std::string GetKeyVal(Json::Value const& object, std::string const& key) {
    return object.isMember(key) ? object[key].asString() : std::string();
}

std::string GetArrayVal(Json::Value const& object, std::string const& key, unsigned long index) {
    if (!object.isMember(key) || index >= object[key].size()) {
        return std::string();
    }
    return object[key][static_cast<Json::ArrayIndex>(index)].asString();
}

Json::Value GetObjectVal(Json::Value const& object, std::string const& key) {
    return object.isMember(key) ? object[key] : Json::Value();
}

Json::Value IndexedReference(Json::Value const& array, std::string const& key) {
    Json::Value result;
    for (Json::Value const& element : array) {
        std::string const text = GetKeyVal(element, key);
        if (!text.empty()) {
            result[text] = element;
        }
    }
    return result;
}

Json::Value IndexedReference(Json::Value const& array, std::string const& inner_key,
                             std::string const& outer_key) {
    Json::Value result;
    for (Json::Value const& element : array) {
        std::string const inner = GetKeyVal(element, inner_key);
        std::string const outer = GetKeyVal(element, outer_key);
        if (!inner.empty() && !outer.empty()) {
            result[outer][inner] = element;
        }
    }
    return result;
}

}  // namespace serverlog::log::adminlog
