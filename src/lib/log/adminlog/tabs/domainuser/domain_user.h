#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The users of a domain.
namespace serverlog::log::adminlog::domainuser {

/// The record of the domain "domain_id" with its users added as "users", by "id"; null when the
/// request names no domain. Throws Exception<ETag::SDK> when a web API fails.
InfoSignature UserInfo;

/// Compares nothing: sorts "members" of the request by "type" into its "user_list" and
/// "group_list". Always null.
DiffSignature TargetMember;

/// The changed users: "user_list" with a change map for each user's ID, which also holds the
/// addresses that came and went as "add_list" and "del_list". The request's "aliases" are the
/// user's whole list: an address that is missing there was deleted.
DiffSignature DiffUser;

/// The role in words: those of a group, and the one that leaves it to the group. Empty for others.
FormatSignature RoleText;

/// Each new member of the template's kind with the domain's name.
TranslateSignature TranslateAdd;

/// The name of each user in "ids", which are user numbers of the system, with the domain's name.
TranslateSignature TranslateDel;

/// Added and deleted addresses and changed roles, by template.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::domainuser
