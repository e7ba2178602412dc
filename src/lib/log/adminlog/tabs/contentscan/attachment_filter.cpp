#include "log/adminlog/tabs/contentscan/attachment_filter.h"

#include "log/adminlog/tabs/contentscan/templates.h"
#include "log/adminlog/toolkit/list_diff.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::contentscan {

namespace {

constexpr char kList[] = "filter_list";

}  // namespace

Json::Value AttachFilterInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Security.AttachmentFilter", "list");
}

Json::Value DiffAttachFilter(Json::Value& old_info, Json::Value& params) {
    return TextListDiff(TryGetObjectVal(old_info, kList), TryGetObjectVal(params, kList));
}

StatementRows TranslateAttachFilterOperation(std::string const& statement,
                                             Json::Value const& /*old_info*/,
                                             Json::Value const& /*params*/, Json::Value const& diff,
                                             Json::Value const& /*body*/) {
    if (statement == kTypeCreated) {
        return TextRows(diff[kAddList]);
    }
    if (statement == kTypeDeleted) {
        return TextRows(diff[kDelList]);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::contentscan
