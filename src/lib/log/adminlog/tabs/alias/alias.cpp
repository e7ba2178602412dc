#include "log/adminlog/tabs/alias/alias.h"

#include "log/adminlog/tabs/alias/templates.h"
#include "log/adminlog/tabs/common/account_name.h"
#include "log/adminlog/tabs/common/domain_download.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::alias {

namespace {

constexpr Word kMemberKinds[] = {
    {"user", Label{"alias", "member_user"}},
    {"group", Label{"alias", "member_group"}},
    {"external", Label{"alias", "member_external"}},
};

std::string MemberKind(Json::Value const& member) {
    std::string const kind = WordText(GetKeyVal(member, "type"), kMemberKinds);
    return kind.empty() ? LabelText(Label{"alias", "member_unknown"}) : kind;
}

/// One row for each member of the request: kind, name, alias, domain's name.
StatementRows MemberRows(Json::Value const& old_info, Json::Value const& params) {
    StatementRows rows;
    for (Json::Value const& member : params["members"]) {
        rows.push_back({MemberKind(member), MemberName(member), GetKeyVal(params, "alias"),
                        GetKeyVal(old_info, "name")});
    }
    return rows;
}

}  // namespace

Json::Value Download(Json::Value const& params) {
    return DomainDownload(params);
}

StatementRows TranslateDel(std::string const& statement, Json::Value const& old_info,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    if (statement != kDeleted) {
        return Ignore();
    }
    StatementRows rows;
    for (Json::Value const& alias : params["aliases"]) {
        rows.push_back({alias.asString(), GetKeyVal(old_info, "name")});
    }
    return rows;
}

StatementRows TranslateDelMember(std::string const& statement, Json::Value const& old_info,
                                 Json::Value const& params, Json::Value const& /*diff*/,
                                 Json::Value const& /*body*/) {
    return statement == kMemberDeleted ? MemberRows(old_info, params) : Ignore();
}

StatementRows TranslateExport(std::string const& statement, Json::Value const& old_info,
                              Json::Value const& /*params*/, Json::Value const& /*diff*/,
                              Json::Value const& /*body*/) {
    if (statement != kExported) {
        return Ignore();
    }
    return {{GetKeyVal(old_info, "name")}};
}

StatementRows TranslateImport(std::string const& statement, Json::Value const& old_info,
                              Json::Value const& params, Json::Value const& /*diff*/,
                              Json::Value const& /*body*/) {
    if (statement != kImported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "file"), GetKeyVal(old_info, "name")}};
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& /*diff*/,
                            Json::Value const& /*body*/) {
    std::string const domain = GetKeyVal(old_info, "name");
    std::string const name = GetKeyVal(params, "alias");
    std::string const old_name = GetKeyVal(params, "org_alias");
    if (statement == kAdded && old_name.empty() && !name.empty()) {
        return {{name, domain}};
    }
    if (statement == kMemberAdded) {
        return MemberRows(old_info, params);
    }
    if (statement == kRenamed && !old_name.empty() && old_name != name) {
        return {{old_name, domain, name}};
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::alias
