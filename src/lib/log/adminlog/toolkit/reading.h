#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// The member's text, or the empty string when there is none.
///
/// Like all readers of the toolkit it throws Json::LogicError when `object` is neither an object
/// nor null, or the member is an object or an array.
std::string GetKeyVal(Json::Value const& object, std::string const& key);

/// The text of an element of the member, or the empty string when there is no such member or
/// `index` is not below the array's size.
std::string GetArrayVal(Json::Value const& object, std::string const& key, unsigned long index);

/// A copy of the member, or null when there is none.
Json::Value GetObjectVal(Json::Value const& object, std::string const& key);

/// Maps each element's text under `key` to the element, so that a list can be looked up by ID.
///
/// Elements without that text are left out; of several with one text the last counts. An object in
/// place of the array has its members walked; null gives null.
Json::Value IndexedReference(Json::Value const& array, std::string const& key);

/// The same on two levels: result[text under outer_key][text under inner_key] is the element.
/// Elements that lack either text are left out.
Json::Value IndexedReference(Json::Value const& array, std::string const& inner_key,
                             std::string const& outer_key);

}  // namespace serverlog::log::adminlog
