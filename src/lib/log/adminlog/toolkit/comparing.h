#pragma once

#include <json/value.h>

#include <map>
#include <string>
#include <vector>

namespace serverlog::log::adminlog {

/// Whether two members differ by type or content.
///
/// @return false also when a key is empty or either member is missing: a missing member is no
///         difference
///
/// Like all readers of the toolkit it throws Json::LogicError when an argument is neither an object
/// nor null.
bool IsDiff(Json::Value const& a, Json::Value const& b, std::string const& key_a,
            std::string const& key_b);

/// IsDiff with one key on both sides.
bool IsDiff(Json::Value const& a, Json::Value const& b, std::string const& key);

/// Makes the change map: each changed member of `params`, mapped to the name of the member of
/// `old_info` that it was compared with.
///
/// @param key_map  parameter key to the key of the old state, for those that go by another name
/// there
/// @return null when nothing changed
Json::Value DiffCollector(Json::Value const& old_info, Json::Value const& params,
                          std::map<std::string, std::string> const& key_map);

/// DiffCollector where every key has one name. Usable as a DiffFunction.
Json::Value DefaultDiff(Json::Value const& old_info, Json::Value const& params);

/// Whether `object` has every one of `keys`; true for no keys.
bool CheckParams(Json::Value const& object, std::vector<std::string> const& keys);

}  // namespace serverlog::log::adminlog
