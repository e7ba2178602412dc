#include "log/adminlog/tabs/smtpsecurity/black_white_list.h"

#include "log/adminlog/tabs/smtpsecurity/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::smtpsecurity {

namespace {

constexpr Setting kRuleMembers[] = {
    {Label{"security", "access_permission"}, "action", nullptr},
    {Label{"overview", "running"}, "enable", IsEnable},
    {Label{"common", "name"}, "description", nullptr},
};

std::vector<Translator> RuleTranslators() {
    // The two first have no text in the text files.
    std::vector<Translator> translators = {{"Rule type", "type", nullptr},
                                           {"Pattern", "pattern", nullptr}};
    for (Translator const& translator : MakeTranslators(kRuleMembers)) {
        translators.push_back(translator);
    }
    return translators;
}

/// The request's list and the rule's description.
EntryValues ListAndDescription(Json::Value const& params) {
    return [list = GetKeyVal(params, "list_type")](Json::Value const& rule) {
        return StatementRow{list, GetKeyVal(rule, "description")};
    };
}

}  // namespace

Json::Value BlackWhiteInfo(Json::Value const& params) {
    Json::Value query;
    query["list_type"] = TryGetObjectVal(params, "list_type");
    Json::Value data = LoadOldState("MERO.PostCubeServer.Security.BlackwhiteList", "list", query);
    return IndexedEntries(data["blackwhite_list"], "id");
}

Json::Value DiffBlackWhite(Json::Value& old_info, Json::Value& params) {
    return EditedEntries(old_info, TryGetObjectVal(params, "edit_list"), "id");
}

StatementRows TranslateBlackWhiteAdd(std::string const& statement, Json::Value const& /*old_info*/,
                                     Json::Value const& params, Json::Value const& /*diff*/,
                                     Json::Value const& /*body*/) {
    if (statement != kRuleCreated) {
        return Ignore();
    }
    return EntryRows(params["item_list"], ListAndDescription(params));
}

StatementRows TranslateBlackWhiteDel(std::string const& statement, Json::Value const& old_info,
                                     Json::Value const& params, Json::Value const& /*diff*/,
                                     Json::Value const& /*body*/) {
    if (statement != kRuleDeleted) {
        return Ignore();
    }
    return IdentifiedRows(params["delete_list"], "id", old_info, ListAndDescription(params));
}

StatementRows TranslateBlackWhiteEdit(std::string const& statement, Json::Value const& old_info,
                                      Json::Value const& params, Json::Value const& diff,
                                      Json::Value const& /*body*/) {
    if (statement != kRuleChanged) {
        return Ignore();
    }
    return EditRows(old_info, diff[kEditList], "id", ListAndDescription(params), RuleTranslators());
}

}  // namespace serverlog::log::adminlog::smtpsecurity
