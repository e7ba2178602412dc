#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// "enabled" or "disabled".
std::string IsBoolEnable(bool value);

/// "disabled" when the member's text is "false", "enabled" otherwise; on purpose also for a missing
/// member. Usable as Translator::format.
std::string IsEnable(std::string const& key, Json::Value const& object);

/// "No" when the member's text is "false", "Yes" otherwise; on purpose also for a missing member.
/// Usable as Translator::format.
std::string IsYesNo(std::string const& key, Json::Value const& object);

/// The number, with a zero before it when it is 0 to 9. A negative number is never padded.
std::string Time00Format(int value);

}  // namespace serverlog::log::adminlog
