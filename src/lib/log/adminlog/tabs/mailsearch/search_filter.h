#pragma once

#include <json/value.h>

#include <string>

/// The filter of a search task: an object of conditions. A condition is one member, or the pair of
/// `<name>_enable` and `<name>_setting`.
namespace serverlog::log::adminlog::mailsearch {

/// The condition `name` of `filter` as it reads: "disabled" for one that is off or missing; a
/// pattern as on the domain page, with its text; any other value as JSON.
///
/// Throws Json::LogicError when `<name>_enable` cannot be shown as text.
std::string ConditionText(std::string const& name, Json::Value const& filter);

/// Whether two filters read the same in all conditions, so that the text of a condition which is
/// off does not count. What is no object is compared as it is. Throws as ConditionText.
bool IsSameFilter(Json::Value const& a, Json::Value const& b);

}  // namespace serverlog::log::adminlog::mailsearch
