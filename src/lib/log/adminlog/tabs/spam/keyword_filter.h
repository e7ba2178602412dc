#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The keyword filters of a group. A request names the group in "group" and holds its whole list of
/// filters as "keyword_list", each with "pattern", "enabled", "target" and "score".
namespace serverlog::log::adminlog::spam {

/// The filters of the group by "pattern" as "indexed_keywords"; none for a group that the mail
/// server does not list.
///
/// Throws Exception<ETag::Log> when the request names no group and Exception<ETag::SDK> when the
/// web API fails.
InfoSignature KeywordInfo;

/// The difference of the list of filters (list_diff.h).
DiffSignature DiffKeyword;

/// The part of a mail that a filter looks at, in words; empty for any other value.
FormatSignature KeywordTargetText;

/// By template: each filter that came or went; the changed fields of a filter.
TranslateSignature TranslateKeywordOperation;

}  // namespace serverlog::log::adminlog::spam
