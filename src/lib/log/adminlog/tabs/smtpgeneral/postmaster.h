#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Who receives the mail for the postmaster. "postmasters" holds objects with "type" (user, group
/// or external) and "member"; in a request it is the whole list.
namespace serverlog::log::adminlog::smtpgeneral {

/// "enable_postmaster" and "postmasters". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature PostmasterInfo;

/// The change map of the settings, with the entries of "postmasters" that only the request has as
/// "add_list" and those that only the old state has as "del_list", each in its list's order.
DiffSignature DiffPostmaster;

/// Added and removed postmasters, each kind and member, and the changed setting, by template.
TranslateSignature TranslateEditPostmaster;

}  // namespace serverlog::log::adminlog::smtpgeneral
