#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The types of attachments that are filtered. A request holds the whole list as "filter_list", a
/// list of texts.
namespace serverlog::log::adminlog::contentscan {

/// The types as "filter_list". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature AttachFilterInfo;

/// The difference of the list of types (list_diff.h).
DiffSignature DiffAttachFilter;

/// By template: each type that came or went.
TranslateSignature TranslateAttachFilterOperation;

}  // namespace serverlog::log::adminlog::contentscan
