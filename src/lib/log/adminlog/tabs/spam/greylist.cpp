#include "log/adminlog/tabs/spam/greylist.h"

#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::spam {

namespace {

constexpr char kList[] = "rule_list";
constexpr char kIndex[] = "indexed_rules";
constexpr char kTarget[] = "target";

constexpr Word kActions[] = {
    {"whitelist", Label{"security", "greylist_action_whitelist"}},
    {"blacklist", Label{"security", "greylist_action_blacklist"}},
    {"greylist", Label{"security", "greylist_action_greylist"}},
};

constexpr Setting kDefaults[] = {
    {Label{"security", "greylist_default_action_desc"}, "default_action", GreylistActionText},
    {Label{"security", "greylist_time_period_desc"}, "greylist_period", nullptr},
};

/// The text files have no label for these.
std::vector<Translator> RuleTranslators() {
    return {{"Action", "action", GreylistActionText}, {"Type", "type", nullptr}};
}

}  // namespace

Json::Value GreylistInfo(Json::Value const& /*params*/) {
    Json::Value info = LoadOldState("MERO.PostCubeServer.Security.Greylist", "get");
    info[kIndex] = IndexedEntries(TryGetObjectVal(info, kList), kTarget);
    return info;
}

Json::Value DiffGreylist(Json::Value& old_info, Json::Value& params) {
    Json::Value diff = DefaultDiff(old_info, params);
    AddListDiff(TryGetObjectVal(old_info, kIndex), TryGetObjectVal(params, kList), kTarget, diff);
    return diff;
}

std::string GreylistActionText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kActions);
}

StatementRows TranslateGreylistOperation(std::string const& statement, Json::Value const& old_info,
                                         Json::Value const& params, Json::Value const& diff,
                                         Json::Value const& /*body*/) {
    EntryValues const rule = MembersOf({"type", kTarget});
    if (statement == kGreylistCreated) {
        return EntryRows(diff[kAddList], rule);
    }
    if (statement == kGreylistDeleted) {
        return EntryRows(diff[kDelList], rule);
    }
    if (statement == kGreylistDefaultChanged) {
        return MuggleTranslate(old_info, params, diff, MakeTranslators(kDefaults));
    }
    if (statement == kGreylistChanged) {
        return EditRows(old_info[kIndex], diff[kEditList], kTarget, rule, RuleTranslators());
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::spam
