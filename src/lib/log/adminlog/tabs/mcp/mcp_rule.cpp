#include "log/adminlog/tabs/mcp/mcp_rule.h"

#include "log/adminlog/tabs/mcp/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/number_text.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"
#include "utils/strings.h"

namespace serverlog::log::adminlog::mcp {

namespace {

constexpr char kIndex[] = "indexed_rules";
constexpr char kName[] = "name";
constexpr char kOldName[] = "origin_name";
constexpr char kUnknownTarget[] = "Unknown";

constexpr Word kTargets[] = {
    {"Subject", Label{"mcp", "mcp_rule_target_title"}},
    {"Body", Label{"mcp", "mcp_rule_target_content"}},
    {"From", Label{"mcp", "mcp_rule_target_sender"}},
    {"To", Label{"mcp", "mcp_rule_target_receiver"}},
    {"Customized", Label{"mcp", "mcp_rule_target_custom_header"}},
};

constexpr Word kRelations[] = {
    {"contain", Label{"mcp", "mcp_rule_relation_contain"}},
    {"regex", Label{"mcp", "mcp_rule_relation_regex"}},
    {"equal", Label{"mcp", "mcp_rule_relation_equal"}},
};

constexpr Setting kSettings[] = {
    {Label{"common", "enabled"}, "enabled", IsEnable},
    {Label{"mcp", "mcp_rule_target_custom_header"}, "customized_header", nullptr},
    {Label{"mcp", "mcp_rule_target"}, "target", TargetText},
    {Label{"mcp", "mcp_rule_relation"}, "relation", RelationText},
    {Label{"mcp", "mcp_rule_pattern"}, "pattern", nullptr},
    {Label{"mcp", "mcp_rule_case_sensitive"}, "case_sensitive", IsYesNo},
    {Label{"common", "score"}, "mcp_score", NumberText},
};

std::vector<std::string> TargetWords(Json::Value const& value) {
    if (!value.isArray()) {
        return utils::Split(value.asString(), ',');
    }
    std::vector<std::string> words;
    for (Json::Value const& word : value) {
        words.push_back(word.asString());
    }
    return words;
}

std::string TargetWordText(std::string const& word) {
    std::string const text = WordText(utils::Trim(word), kTargets);
    return text.empty() ? kUnknownTarget : text;
}

/// The request's entries, each with the name before the call.
Json::Value WithOldNames(Json::Value const& list) {
    if (!list.isArray()) {
        return Json::Value();
    }
    Json::Value named = list;
    for (Json::Value& entry : named) {
        if (entry.isObject() && !entry.isMember(kOldName)) {
            entry[kOldName] = entry[kName];
        }
    }
    return named;
}

StatementRows RenamedRows(Json::Value const& edit_list) {
    StatementRows rows;
    for (Json::Value const& entry : edit_list) {
        std::string const old_name = GetKeyVal(entry, kOldName);
        if (entry.isMember(kName) && GetKeyVal(entry, kName) != old_name) {
            rows.push_back({old_name, GetKeyVal(entry, kName)});
        }
    }
    return rows;
}

}  // namespace

Json::Value McpRuleInfo(Json::Value const& /*params*/) {
    Json::Value const data =
        LoadOldState("MERO.PostCubeServer.Security.MCP", "list_rule", WholeListQuery());
    Json::Value info;
    info[kIndex] = IndexedEntries(TryGetObjectVal(data, "rule_list"), kName);
    return info;
}

Json::Value DiffMcpRule(Json::Value& old_info, Json::Value& params) {
    return EditedEntries(TryGetObjectVal(old_info, kIndex),
                         WithOldNames(TryGetObjectVal(params, kEditList)), kOldName);
}

std::string TargetText(std::string const& member, Json::Value const& object) {
    std::vector<std::string> texts;
    for (std::string const& word : TargetWords(GetObjectVal(object, member))) {
        texts.push_back(TargetWordText(word));
    }
    return texts.empty() ? kUnknownTarget : utils::Join(texts, ", ");
}

std::string RelationText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kRelations);
}

StatementRows TranslateMcpRuleAdd(std::string const& statement, Json::Value const& /*old_info*/,
                                  Json::Value const& params, Json::Value const& /*diff*/,
                                  Json::Value const& /*body*/) {
    return statement == kRuleCreated ? EntryRows(params["rule_list"], MembersOf({kName}))
                                     : Ignore();
}

StatementRows TranslateMcpRuleDel(std::string const& statement, Json::Value const& /*old_info*/,
                                  Json::Value const& params, Json::Value const& /*diff*/,
                                  Json::Value const& /*body*/) {
    return statement == kRuleDeleted ? TextRows(params["delete_list"]) : Ignore();
}

StatementRows TranslateMcpRuleEdit(std::string const& statement, Json::Value const& old_info,
                                   Json::Value const& /*params*/, Json::Value const& diff,
                                   Json::Value const& /*body*/) {
    if (statement == kRuleChanged) {
        return EditRows(old_info[kIndex], diff[kEditList], kOldName, MembersOf({kName}),
                        MakeTranslators(kSettings));
    }
    if (statement == kRuleRenamed) {
        return RenamedRows(diff[kEditList]);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::mcp
