#include "log/adminlog/toolkit/comparing.h"

#include <algorithm>

namespace serverlog::log::adminlog {

namespace {

/// None for what is no object: a request of the wrong shape has no settings to compare.
std::vector<std::string> MemberNames(Json::Value const& value) {
    return value.isObject() ? value.getMemberNames() : std::vector<std::string>();
}

}  // namespace

bool IsDiff(Json::Value const& a, Json::Value const& b, std::string const& key_a,
            std::string const& key_b) {
    if (key_a.empty() || key_b.empty() || !a.isMember(key_a) || !b.isMember(key_b)) {
        return false;
    }
    return a[key_a] != b[key_b];
}

bool IsDiff(Json::Value const& a, Json::Value const& b, std::string const& key) {
    return IsDiff(a, b, key, key);
}

Json::Value DiffCollector(Json::Value const& old_info, Json::Value const& params,
                          std::map<std::string, std::string> const& key_map) {
    std::map<std::string, std::string> pairs = key_map;
    for (std::string const& key : MemberNames(params)) {
        pairs.emplace(key, key);
    }

    Json::Value changes;
    for (auto const& [key, old_key] : pairs) {
        if (IsDiff(params, old_info, key, old_key)) {
            changes[key] = old_key;
        }
    }
    return changes;
}

Json::Value DefaultDiff(Json::Value const& old_info, Json::Value const& params) {
    return DiffCollector(old_info, params, {});
}

bool CheckParams(Json::Value const& object, std::vector<std::string> const& keys) {
    return std::all_of(keys.begin(), keys.end(),
                       [&object](std::string const& key) { return object.isMember(key); });
}

}  // namespace serverlog::log::adminlog
