#include "log/adminlog/tabs/common/account_name.h"

#include "log/adminlog/toolkit/reading.h"
#include "utils/merosdk/group.h"

#include <mailserver/user.h>

namespace serverlog::log::adminlog {

std::string UserName(Json::Value const& user) {
    std::string name = user.asString();
    if (user.isUInt()) {
        getRealUserName(user.asUInt(), name);
    }
    return name;
}

std::string GroupName(Json::Value const& group) {
    return group.isUInt() ? utils::ZsmGroup(group.asUInt()).GetGroupRealName() : group.asString();
}

std::string MemberName(Json::Value const& member) {
    if (!member.isObject()) {
        return UserName(member);
    }
    if (member.isMember("name")) {
        return member["name"].asString();
    }
    return GetKeyVal(member, "type") == "group" ? GroupName(member["id"]) : UserName(member["id"]);
}

}  // namespace serverlog::log::adminlog
