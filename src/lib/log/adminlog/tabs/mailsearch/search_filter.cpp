#include "log/adminlog/tabs/mailsearch/search_filter.h"

#include "log/adminlog/tabs/domain/domain_statements.h"
#include "log/adminlog/toolkit/formatting.h"
#include "utils/json_text.h"
#include "utils/strings.h"

#include <algorithm>
#include <set>

namespace serverlog::log::adminlog::mailsearch {

namespace {

constexpr char kEnable[] = "_enable";
constexpr char kSetting[] = "_setting";

void AddConditionNames(Json::Value const& filter, std::set<std::string>& names) {
    for (std::string const& member : filter.getMemberNames()) {
        bool const is_half = utils::Endswith(member, kEnable) || utils::Endswith(member, kSetting);
        names.insert(is_half ? member.substr(0, member.rfind('_')) : member);
    }
}

}  // namespace

std::string ConditionText(std::string const& name, Json::Value const& filter) {
    bool const has_switch = filter.isMember(name + kEnable);
    std::string const member = filter.isMember(name + kSetting) ? name + kSetting : name;
    bool const is_on = has_switch ? IsEnable(name + kEnable, filter) == IsBoolEnable(true)
                                  : filter.isMember(member);
    if (!is_on || !filter.isMember(member)) {
        return IsBoolEnable(is_on);
    }
    if (!filter[member].isString()) {
        return utils::ToJsonText(filter[member]);
    }
    return domain::AliasPatternText(member, filter) + " (" + filter[member].asString() + ")";
}

bool IsSameFilter(Json::Value const& a, Json::Value const& b) {
    if (!a.isObject() || !b.isObject()) {
        return a == b;
    }
    std::set<std::string> names;
    AddConditionNames(a, names);
    AddConditionNames(b, names);
    return std::all_of(names.begin(), names.end(), [&a, &b](std::string const& name) {
        return ConditionText(name, a) == ConditionText(name, b);
    });
}

}  // namespace serverlog::log::adminlog::mailsearch
