#include "log/adminlog/tabs/common/quarantined_mail.h"

#include "log/adminlog/toolkit/attachment.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <utility>

namespace serverlog::log::adminlog {

namespace {

constexpr char kId[] = "mail_uid";
constexpr char kIndex[] = "indexed_mails";

}  // namespace

Json::Value LoadDownloadedMail(char const* api, Json::Value const& params) {
    Json::Value query;
    query[kId] = TryGetObjectVal(params, kId);
    Json::Value info = LoadOldState(api, "get", query);
    info["force_log"] = true;
    return info;
}

Json::Value LoadQuarantine(char const* api) {
    Json::Value info;
    info[kIndex] = IndexedEntries(
        TryGetObjectVal(LoadOldState(api, "list", WholeListQuery()), "mail_list"), kId);
    return info;
}

StatementRows QuarantinedMailRows(Json::Value const& old_info, Json::Value const& params,
                                  std::vector<std::string> members) {
    return IdentifiedRows(params["mail_uid_list"], kId, old_info[kIndex],
                          MembersOf(std::move(members)));
}

StatementRows AttachmentRow(Json::Value const& old_info, Json::Value const& params,
                            std::vector<std::string> members) {
    StatementRow row = {
        AttachmentName(old_info["attachment_list"], GetKeyVal(params, "attachment_id"))};
    StatementRow const mail = MembersOf(std::move(members))(old_info);
    row.insert(row.end(), mail.begin(), mail.end());
    return {row};
}

}  // namespace serverlog::log::adminlog
