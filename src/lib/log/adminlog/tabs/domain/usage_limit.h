#pragma once

#include "log/adminlog/toolkit/signatures.h"

#include <json/value.h>

#include <string>

/// The usage limit page of a domain, which also holds the catch-all of the advanced settings.
namespace serverlog::log::adminlog::domain {

/// Adds the parts of a nested limit to `object` as members of their own: `name` + "_enable", and
/// `name` + "_setting" if the limit has a "setting". An object without such a limit stays as it is.
void FlattenLimit(Json::Value& object, std::string const& name);

/// The change map after both sides have been flattened, since translators compare flat members. The
/// flat members stay in `params` and so show up among the call's parameters.
DiffSignature DiffUsage;

/// Changed settings, those of the usage limit or the advanced ones by template: label, domain's
/// name, old, new.
TranslateSignature TranslateUsageEdit;

/// Cleared usage data: the domain's name when "delete_all" is given, otherwise each text of
/// "delete_list" with the domain's name.
TranslateSignature TranslateUsageDel;

}  // namespace serverlog::log::adminlog::domain
