#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::endpoint {

/// Says whether a parameter may have this value, for MERO::ReadCgiRequest. The library opens the
/// files that it is told to, as root, so those that name files are restricted: "db_path" to files
/// in the folder of the stores or in the archive's, wherever links lead; "lang" to a plain word.
bool MayHaveValue(const std::string& key, const Json::Value& value);

}  // namespace serverlog::endpoint
