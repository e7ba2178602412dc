#pragma once

#include <json/value.h>

namespace serverlog::log::adminlog::domain {

/// The record of the domain "domain_id" with one member added: its users or groups by "id".
///
/// @param params  the request
/// @param api     the web API that lists the members
/// @param list    the list's name in the reply, and the name of the member to add
/// @return null when the request names no domain
///
/// Throws Exception<ETag::SDK> when a web API fails.
Json::Value DomainWithMembers(Json::Value const& params, char const* api, char const* list);

}  // namespace serverlog::log::adminlog::domain
