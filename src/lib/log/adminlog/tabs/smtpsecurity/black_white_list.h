#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The black and the white list. A request names its list in "list_type", which statements show as
/// it is; a rule has an "id" and goes by its "description".
namespace serverlog::log::adminlog::smtpsecurity {

/// The rules of the list by "id". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature BlackWhiteInfo;

/// The rules of "edit_list" that differ from the old ones, as "edit_list"; null when there are
/// none.
DiffSignature DiffBlackWhite;

/// Each rule of "item_list": list, description.
TranslateSignature TranslateBlackWhiteAdd;

/// Each old rule of "delete_list", which holds IDs or objects with "id": list, description.
TranslateSignature TranslateBlackWhiteDel;

/// Each changed member of a rule: label, list, the rule's old description, old, new.
TranslateSignature TranslateBlackWhiteEdit;

}  // namespace serverlog::log::adminlog::smtpsecurity
