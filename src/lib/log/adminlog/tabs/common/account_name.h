#pragma once

#include <json/value.h>

#include <string>

/// Users and groups as requests name them: by the system's number or by a name.
namespace serverlog::log::adminlog {

/// The user's name: that of the system for a number, a text as it stands. A number that no user has
/// any more shows as itself.
std::string UserName(Json::Value const& user);

/// The group's real name for a number, a text as it stands. Throws Exception<ETag::SDK> when no
/// group has the number.
std::string GroupName(Json::Value const& group);

/// The name of a member of a list: its "name", or else what its "id" names, which is a group when
/// the "type" is "group" and a user otherwise. A number or a text is a user as in UserName.
std::string MemberName(Json::Value const& member);

}  // namespace serverlog::log::adminlog
