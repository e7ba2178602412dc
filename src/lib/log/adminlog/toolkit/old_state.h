#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// What info functions load. The shape of a reply never makes these throw, since that would end the
/// administrator's call.

/// The data that a method of this machine's web API gives, in its version 1; null when the data is
/// no object.
///
/// Throws Exception<ETag::SDK> when the web API fails.
Json::Value LoadOldState(char const* api, char const* method,
                         Json::Value const& query = Json::objectValue);

/// The parameters with which a list method gives all that it has.
Json::Value WholeListQuery();

/// The entries of a list by their text under `key`, as IndexedReference; but an object also when
/// there is none, and without what is no entry.
Json::Value IndexedEntries(Json::Value const& list, std::string const& key);

}  // namespace serverlog::log::adminlog
