#include "log/adminlog/toolkit/list_diff.h"

#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <set>

namespace serverlog::log::adminlog {

namespace {

std::set<std::string> Texts(Json::Value const& list) {
    std::set<std::string> texts;
    for (Json::Value const& element : list) {
        if (element.isString()) {
            texts.insert(element.asString());
        }
    }
    return texts;
}

/// Appends each text of `list` that `others` lack to the member `name` of `diff`.
void AddMissing(Json::Value const& list, Json::Value const& others, char const* name,
                Json::Value& diff) {
    std::set<std::string> known = Texts(others);
    for (Json::Value const& element : list) {
        if (element.isString() && known.insert(element.asString()).second) {
            diff[name].append(element);
        }
    }
}

}  // namespace

void AddListDiff(Json::Value const& old_entries, Json::Value const& list, std::string const& key,
                 Json::Value& diff) {
    if (!old_entries.isObject() || !list.isArray()) {
        return;
    }
    std::set<std::string> seen;
    for (Json::Value const& entry : list) {
        std::string const text = TryGetKeyVal(entry, key);
        if (text.empty() || !seen.insert(text).second) {
            continue;
        }
        if (!old_entries.isMember(text)) {
            diff[kAddList].append(entry);
        } else if (!DefaultDiff(old_entries[text], entry).isNull()) {
            diff[kEditList].append(entry);
        }
    }
    for (std::string const& text : old_entries.getMemberNames()) {
        if (seen.count(text) == 0) {
            diff[kDelList].append(old_entries[text]);
        }
    }
}

Json::Value EditedEntries(Json::Value const& old_entries, Json::Value const& list,
                          std::string const& key) {
    Json::Value all;
    AddListDiff(old_entries, list, key, all);
    Json::Value diff;
    if (all.isMember(kEditList)) {
        diff[kEditList] = all[kEditList];
    }
    return diff;
}

Json::Value TextListDiff(Json::Value const& old_list, Json::Value const& list) {
    Json::Value diff;
    if (old_list.isArray() && list.isArray()) {
        AddMissing(list, old_list, kAddList, diff);
        AddMissing(old_list, list, kDelList, diff);
    }
    return diff;
}

}  // namespace serverlog::log::adminlog
