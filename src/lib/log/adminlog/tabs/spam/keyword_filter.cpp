#include "log/adminlog/tabs/spam/keyword_filter.h"

#include <mailserver-log/exception/exception.h>

#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/number_text.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::spam {

namespace {

constexpr char kList[] = "keyword_list";
constexpr char kIndex[] = "indexed_keywords";
constexpr char kPattern[] = "pattern";

constexpr Word kTargets[] = {
    {"subject", Label{"mcp", "mcp_rule_target_title"}},
    {"content", Label{"mcp", "mcp_rule_target_content"}},
};

constexpr Setting kSettings[] = {
    {Label{"mcp", "mcp_rule_target"}, "target", KeywordTargetText},
    {Label{"common", "score"}, "score", NumberText},
};

std::vector<Translator> FilterTranslators() {
    std::vector<Translator> translators = MakeTranslators(kSettings);
    // The text files have no label for this.
    translators.insert(translators.begin(), {"Enable", "enabled", IsEnable});
    return translators;
}

}  // namespace

Json::Value KeywordInfo(Json::Value const& params) {
    std::string const name = TryGetKeyVal(params, "group");
    if (name.empty()) {
        throw make_exception<ETag::Log>(LogError::LoadOldSettingsFail,
                                        "Spam keyword set has no group");
    }
    Json::Value query;
    query["group"] = name;
    Json::Value const data =
        LoadOldState("MERO.PostCubeServer.Spam.SpamAssassin", "list_keyword", query);
    Json::Value const groups = IndexedEntries(TryGetObjectVal(data, "group_list"), "name");
    Json::Value info;
    info[kIndex] = IndexedEntries(TryGetObjectVal(groups[name], kList), kPattern);
    return info;
}

Json::Value DiffKeyword(Json::Value& old_info, Json::Value& params) {
    Json::Value diff;
    AddListDiff(TryGetObjectVal(old_info, kIndex), TryGetObjectVal(params, kList), kPattern, diff);
    return diff;
}

std::string KeywordTargetText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kTargets);
}

StatementRows TranslateKeywordOperation(std::string const& statement, Json::Value const& old_info,
                                        Json::Value const& params, Json::Value const& diff,
                                        Json::Value const& /*body*/) {
    std::string const group = GetKeyVal(params, "group");
    EntryValues const filter = [&group](Json::Value const& entry) {
        return StatementRow{GetKeyVal(entry, kPattern), group};
    };
    if (statement == kKeywordCreated) {
        return EntryRows(diff[kAddList], filter);
    }
    if (statement == kKeywordDeleted) {
        return EntryRows(diff[kDelList], filter);
    }
    if (statement == kKeywordChanged) {
        return EditRows(old_info[kIndex], diff[kEditList], kPattern, filter, FilterTranslators());
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::spam
