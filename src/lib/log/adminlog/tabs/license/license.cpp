#include "log/adminlog/tabs/license/license.h"

#include "log/adminlog/tabs/common/account_name.h"
#include "log/adminlog/tabs/license/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"

#include <algorithm>
#include <vector>

namespace serverlog::log::adminlog::license {

namespace {

std::vector<std::string> MemberNames(Json::Value const& members) {
    std::vector<std::string> names;
    for (Json::Value const& member : members) {
        names.push_back(MemberName(member));
    }
    return names;
}

/// One row for each of `members` that `others` lack.
StatementRows MissingRows(Json::Value const& members, Json::Value const& others) {
    std::vector<std::string> const known = MemberNames(others);
    StatementRows rows;
    for (std::string const& name : MemberNames(members)) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            rows.push_back({name});
        }
    }
    return rows;
}

}  // namespace

Json::Value ActivatedMemberInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.License", "list_activate_member", WholeListQuery());
}

StatementRows TranslateActivate(std::string const& statement, Json::Value const& /*old_info*/,
                                Json::Value const& params, Json::Value const& /*diff*/,
                                Json::Value const& /*body*/) {
    if (statement != kActivated) {
        return Ignore();
    }
    return {{GetKeyVal(params, "license")}};
}

StatementRows TranslateEditMember(std::string const& statement, Json::Value const& old_info,
                                  Json::Value const& params, Json::Value const& /*diff*/,
                                  Json::Value const& /*body*/) {
    if (!CheckParams(old_info, {"members"}) || !CheckParams(params, {"members"})) {
        return Ignore();
    }
    if (statement == kMemberActivated) {
        return MissingRows(params["members"], old_info["members"]);
    }
    if (statement == kMemberDeactivated) {
        return MissingRows(old_info["members"], params["members"]);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::license
