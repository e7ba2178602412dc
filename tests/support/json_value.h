#pragma once

#include <json/value.h>

#include <string>

namespace test {

/// The value of a JSON text; std::runtime_error for anything else.
Json::Value JsonOf(const std::string& text);

/// A JSON value as text on one line, as a message or an expectation shows it.
std::string TextOf(const Json::Value& value);

}  // namespace test
