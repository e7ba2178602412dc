#pragma once

#include "log/adminlog/toolkit/statement_rows.h"
#include "log/adminlog/toolkit/translator.h"

#include <json/value.h>

#include <functional>
#include <string>
#include <vector>

/// Rows for list pages. All throw Json::LogicError for a value that cannot be shown as text, and
/// give no row for a list that is not there.
namespace serverlog::log::adminlog {

/// The values that a statement shows of an entry.
using EntryValues = std::function<StatementRow(Json::Value const& entry)>;

/// EntryValues of members, in their order; what is missing shows as the empty string.
EntryValues MembersOf(std::vector<std::string> members);

/// One row for each entry of `list`.
StatementRows EntryRows(Json::Value const& list, EntryValues const& values);

/// One row for each text of `list`: the text.
StatementRows TextRows(Json::Value const& list);

/// One row for each element of `ids` that names an entry of `entries`.
///
/// @param ids      the entries' identities themselves, or objects that hold them under `key`
/// @param entries  the old entries by identity
StatementRows IdentifiedRows(Json::Value const& ids, std::string const& key,
                             Json::Value const& entries, EntryValues const& values);

/// The rows of MuggleTranslate for each entry of `edit_list` that `old_entries` has, its `values`
/// as they were before standing between label and old text.
///
/// @param key  the member whose text names the entry in `old_entries`
StatementRows EditRows(Json::Value const& old_entries, Json::Value const& edit_list,
                       std::string const& key, EntryValues const& values,
                       std::vector<Translator> const& translators);

}  // namespace serverlog::log::adminlog
