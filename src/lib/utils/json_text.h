#pragma once

#include <json/json.h>

#include <string>

/// The text form of JSON values that the log and the web API exchange: the one-line form of
/// Json::FastWriter. jsoncpp deprecates that class and its reader for others that write and accept
/// different texts, and texts that are stored have to stay as they are; so this is the one place
/// that uses them.
///
/// Free of state; may run in several threads at once.
namespace serverlog::utils {

/// `value` on one line: no blanks, members in the order of their names, letters outside ASCII as
/// \u escapes, a line feed at the end.
///
/// Throws Json::RuntimeError where `value` nests deeper than jsoncpp's limit.
std::string ToJsonText(const Json::Value& value);

/// Reads one JSON document; comments and what follows the document are accepted and ignored.
///
/// @param value  what was read; on failure null or the part that could be read
/// @return       false when `text` holds no JSON
bool ParseJsonText(const std::string& text, Json::Value& value);

}  // namespace serverlog::utils
