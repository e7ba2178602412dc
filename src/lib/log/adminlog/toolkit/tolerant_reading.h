#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// A copy of the member; null when `value` is no object or lacks it. Never throws for a wrong type.
Json::Value TryGetObjectVal(Json::Value const& value, std::string const& key);

/// The member's text; empty when `value` is no object, lacks it, or the member is itself an object
/// or an array. Never throws for a wrong type.
std::string TryGetKeyVal(Json::Value const& value, std::string const& key);

}  // namespace serverlog::log::adminlog
