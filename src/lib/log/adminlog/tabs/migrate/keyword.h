#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The words by which a migration task picks mails. A request's "target" tells the list: "keyword",
/// or "exception" for the words that except a mail.
namespace serverlog::log::adminlog::migrate {

/// The words of the list, "keyword_list". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature KeywordInfo;

/// The texts of "items", the whole list of the request, that the old list lacks as "add_list", and
/// those that only the old list has as "del_list".
DiffSignature DiffKeyword;

/// Each added and removed word, by template: the list in words, the word, the task's name.
TranslateSignature TranslateKeywordEdit;

}  // namespace serverlog::log::adminlog::migrate
