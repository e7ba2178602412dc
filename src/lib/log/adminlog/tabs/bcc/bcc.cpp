#include "log/adminlog/tabs/bcc/bcc.h"

#include "log/adminlog/tabs/bcc/templates.h"
#include "log/adminlog/tabs/common/domain_download.h"
#include "log/adminlog/tabs/domain/domain_members.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::bcc {

namespace {

constexpr Word kRuleTypes[] = {
    {"sender", Label{"bcc", "sender_rule"}},
    {"recipient", Label{"bcc", "recipient_rule"}},
};

constexpr Word kDirections[] = {
    {"in", Label{"bcc", "direction_in"}},
    {"out", Label{"bcc", "direction_out"}},
    {"both", Label{"bcc", "direction_both"}},
};

constexpr Setting kSettings[] = {
    {Label{"bcc", "enable"}, "enable", IsEnable},
    {Label{"bcc", "type"}, "type", RuleTypeText},
    {Label{"bcc", "condition"}, "condition", nullptr},
    {Label{"bcc", "direction"}, "direction", DirectionText},
    {Label{"bcc", "target"}, "target", nullptr},
};

}  // namespace

Json::Value Download(Json::Value const& params) {
    return DomainDownload(params);
}

Json::Value BccInfo(Json::Value const& params) {
    return domain::DomainWithMembers(params, "MERO.PostCubeServer.Domain.BCC", "rules");
}

Json::Value DiffBcc(Json::Value& old_info, Json::Value& params) {
    Json::Value const rule =
        TryGetObjectVal(TryGetObjectVal(old_info, "rules"), TryGetKeyVal(params, "id"));
    return DefaultDiff(rule, params);
}

std::string RuleTypeText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kRuleTypes);
}

std::string DirectionText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kDirections);
}

StatementRows TranslateBccOperation(std::string const& statement, Json::Value const& old_info,
                                    Json::Value const& params, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    std::string const domain = GetKeyVal(old_info, "name");
    if (statement == kCreated) {
        return {{GetKeyVal(params, "name"), domain}};
    }
    StatementRows rows;
    if (statement == kDeleted) {
        for (Json::Value const& name : params["names"]) {
            rows.push_back({name.asString(), domain});
        }
    }
    return rows;
}

StatementRows TranslateExport(std::string const& statement, Json::Value const& old_info,
                              Json::Value const& params, Json::Value const& /*diff*/,
                              Json::Value const& /*body*/) {
    if (statement != kExported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "file"), GetKeyVal(old_info, "name")}};
}

StatementRows TranslateImport(std::string const& statement, Json::Value const& old_info,
                              Json::Value const& params, Json::Value const& /*diff*/,
                              Json::Value const& /*body*/) {
    if (statement != kImported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "file"), RuleTypeText("type", params), GetKeyVal(old_info, "name")}};
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    std::string const domain = GetKeyVal(old_info, "name");
    Json::Value const rule = GetObjectVal(GetObjectVal(old_info, "rules"), GetKeyVal(params, "id"));
    std::string const name = GetKeyVal(rule, "name");
    if (statement == kSettingChanged) {
        return MuggleTranslate(rule, params, diff, {name, domain}, MakeTranslators(kSettings));
    }
    if (statement == kRenamed && diff.isMember("name")) {
        return {{name, domain, GetKeyVal(params, "name")}};
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::bcc
