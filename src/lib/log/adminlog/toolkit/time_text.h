#pragma once

#include <json/value.h>

#include <initializer_list>
#include <string>

namespace serverlog::log::adminlog {

/// A time of day from two members, such as "03 : 05": each a number, or a text that may hold one.
/// A member that is no number is shown as it is, a missing one as the empty string.
///
/// Throws Json::LogicError when one cannot be shown as text.
std::string TimeText(Json::Value const& object, std::string const& hour_key,
                     std::string const& minute_key);

/// A request with those of `keys` taken over from the old state that it lacks: who changes only the
/// hour leaves the minute as it was, and the new time shows both.
Json::Value WithOldMembers(Json::Value const& old_info, Json::Value params,
                           std::initializer_list<char const*> keys);

}  // namespace serverlog::log::adminlog
