#pragma once

#include <json/value.h>

#include <string>

namespace platform {

/// Writes a JSON value in one line without a line end.
std::string ToJsonText(const Json::Value& value);

/// Reads a JSON document.
///
/// @param text   the document and nothing but blanks behind it
/// @param value  receives the value; of use only on success
/// @return false when the text is none, or nested more than 1000 levels deep
bool ParseJsonText(const std::string& text, Json::Value& value);

}  // namespace platform
