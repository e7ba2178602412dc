#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// The difference of a list is an object of three arrays, each only there when it has an element.
/// The functions of list_rows.h make statements of it.
inline constexpr char kAddList[] = "add_list";
inline constexpr char kDelList[] = "del_list";
inline constexpr char kEditList[] = "edit_list";

/// Adds the difference between a list as it was and the whole list of a request to `diff`.
///
/// kAddList and kEditList get entries of the request in its order, kDelList old entries sorted by
/// their text. An entry is edited when a member that both sides have differs. Of like entries in a
/// request the first counts. Never throws for a wrong type: what is no entry is passed over.
///
/// @param old_entries  the old list by the text under `key`, as from IndexedEntries; null when it
///                     is not known, and then nothing is added
/// @param list         the request's list; nothing is added for what is no array
/// @param key          the member that tells entries apart
void AddListDiff(Json::Value const& old_entries, Json::Value const& list, std::string const& key,
                 Json::Value& diff);

/// The difference for a request that names only the entries to change: those of `list` that the old
/// list has and that differ from there, as kEditList; null when there are none. Otherwise as
/// AddListDiff.
Json::Value EditedEntries(Json::Value const& old_entries, Json::Value const& list,
                          std::string const& key);

/// The difference between two lists of texts, as kAddList in the request's order and kDelList in
/// the old one; null when there is none, or when one of the two is no array.
Json::Value TextListDiff(Json::Value const& old_list, Json::Value const& list);

}  // namespace serverlog::log::adminlog
