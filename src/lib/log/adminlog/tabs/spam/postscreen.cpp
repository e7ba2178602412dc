#include "log/adminlog/tabs/spam/postscreen.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/number_text.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::spam {

namespace {

constexpr char kList[] = "dnsbl_server_list";
constexpr char kIndex[] = "indexed_dnsbl_servers";
constexpr char kServer[] = "server";

constexpr Setting kSettings[] = {
    {Label{"security", "postscreen_dnsbl_threshold"}, "dnsbl_score_threshold", NumberText}};

constexpr Setting kServerSettings[] = {{Label{"common", "score"}, "score", NumberText}};

}  // namespace

Json::Value PostscreenInfo(Json::Value const& /*params*/) {
    Json::Value info = LoadOldState("MERO.PostCubeServer.Security.PostScreen", "get");
    info[kIndex] = IndexedEntries(TryGetObjectVal(info, kList), kServer);
    return info;
}

Json::Value DiffPostscreen(Json::Value& old_info, Json::Value& params) {
    Json::Value diff = DefaultDiff(old_info, params);
    AddListDiff(TryGetObjectVal(old_info, kIndex), TryGetObjectVal(params, kList), kServer, diff);
    return diff;
}

StatementRows TranslatePostscreenOperation(std::string const& statement,
                                           Json::Value const& old_info, Json::Value const& params,
                                           Json::Value const& diff, Json::Value const& /*body*/) {
    EntryValues const server = MembersOf({kServer});
    if (statement == kServerCreated) {
        return EntryRows(diff[kAddList], server);
    }
    if (statement == kServerDeleted) {
        return EntryRows(diff[kDelList], server);
    }
    if (statement == kSettingChanged) {
        return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
    }
    if (statement == kServerChanged) {
        return EditRows(old_info[kIndex], diff[kEditList], kServer, server,
                        MakeTranslators(kServerSettings));
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::spam
