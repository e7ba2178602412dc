#include "log/adminlog/tabs/authentication/dkim_whitelist.h"

#include "log/adminlog/tabs/authentication/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::authentication {

namespace {

constexpr char kIndex[] = "indexed_senders";
constexpr char kId[] = "id";

constexpr Setting kSettings[] = {
    {Label{"overview", "running"}, "enable", IsEnable},
    {Label{"security", "ip"}, "pattern", nullptr},
    {Label{"common", "name"}, "description", nullptr},
};

EntryValues Sender() {
    return MembersOf({"pattern", "description"});
}

}  // namespace

Json::Value DkimInfo(Json::Value const& /*params*/) {
    Json::Value const data =
        LoadOldState("MERO.PostCubeServer.Security.DkimTrustSender", "list", WholeListQuery());
    Json::Value info;
    info[kIndex] = IndexedEntries(TryGetObjectVal(data, "dkim_whitelist"), kId);
    return info;
}

Json::Value DiffDkimWhitelist(Json::Value& old_info, Json::Value& params) {
    return EditedEntries(TryGetObjectVal(old_info, kIndex), TryGetObjectVal(params, kEditList),
                         kId);
}

StatementRows TranslateDkimWhitelistAdd(std::string const& statement,
                                        Json::Value const& /*old_info*/, Json::Value const& params,
                                        Json::Value const& /*diff*/, Json::Value const& /*body*/) {
    return statement == kSenderAdded ? EntryRows(params["create_list"], Sender()) : Ignore();
}

StatementRows TranslateDkimWhitelistDel(std::string const& statement, Json::Value const& old_info,
                                        Json::Value const& params, Json::Value const& /*diff*/,
                                        Json::Value const& /*body*/) {
    if (statement != kSenderDeleted) {
        return Ignore();
    }
    return IdentifiedRows(params["delete_list"], kId, old_info[kIndex], Sender());
}

StatementRows TranslateDkimWhitelistEdit(std::string const& statement, Json::Value const& old_info,
                                         Json::Value const& /*params*/, Json::Value const& diff,
                                         Json::Value const& /*body*/) {
    if (statement != kSenderChanged) {
        return Ignore();
    }
    return EditRows(old_info[kIndex], diff[kEditList], kId, Sender(), MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::authentication
