#include "log/adminlog/toolkit/list_rows.h"

#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"

#include <utility>

namespace serverlog::log::adminlog {

EntryValues MembersOf(std::vector<std::string> members) {
    return [members = std::move(members)](Json::Value const& entry) {
        StatementRow row;
        for (std::string const& member : members) {
            row.push_back(GetKeyVal(entry, member));
        }
        return row;
    };
}

StatementRows EntryRows(Json::Value const& list, EntryValues const& values) {
    StatementRows rows;
    for (Json::Value const& entry : list) {
        rows.push_back(values(entry));
    }
    return rows;
}

StatementRows TextRows(Json::Value const& list) {
    return EntryRows(list, [](Json::Value const& text) { return StatementRow{text.asString()}; });
}

StatementRows IdentifiedRows(Json::Value const& ids, std::string const& key,
                             Json::Value const& entries, EntryValues const& values) {
    StatementRows rows;
    for (Json::Value const& element : ids) {
        std::string const id = element.isObject() ? GetKeyVal(element, key) : element.asString();
        if (entries.isMember(id)) {
            rows.push_back(values(entries[id]));
        }
    }
    return rows;
}

StatementRows EditRows(Json::Value const& old_entries, Json::Value const& edit_list,
                       std::string const& key, EntryValues const& values,
                       std::vector<Translator> const& translators) {
    StatementRows rows;
    for (Json::Value const& entry : edit_list) {
        std::string const id = GetKeyVal(entry, key);
        if (!old_entries.isMember(id)) {
            continue;
        }
        Json::Value const& old_entry = old_entries[id];
        StatementRows const changed = MuggleTranslate(
            old_entry, entry, DefaultDiff(old_entry, entry), values(old_entry), translators);
        rows.insert(rows.end(), changed.begin(), changed.end());
    }
    return rows;
}

}  // namespace serverlog::log::adminlog
