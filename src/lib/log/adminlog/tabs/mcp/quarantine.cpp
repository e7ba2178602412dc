#include "log/adminlog/tabs/mcp/quarantine.h"

#include "log/adminlog/tabs/common/quarantined_mail.h"
#include "log/adminlog/tabs/mcp/templates.h"
#include "log/adminlog/toolkit/known_template.h"

namespace serverlog::log::adminlog::mcp {

namespace {

constexpr char kApi[] = "MERO.PostCubeServer.Security.MCPQuarantine";

constexpr char const* kMailOperations[] = {kMailDeleted, kMailReleased};

}  // namespace

Json::Value QuarantineInfo(Json::Value const& /*params*/) {
    return LoadQuarantine(kApi);
}

Json::Value DownloadAttachInfo(Json::Value const& params) {
    return LoadDownloadedMail(kApi, params);
}

StatementRows TranslateQuarantineOperation(std::string const& statement,
                                           Json::Value const& old_info, Json::Value const& params,
                                           Json::Value const& /*diff*/,
                                           Json::Value const& /*body*/) {
    if (!IsOneOf(statement, kMailOperations)) {
        return Ignore();
    }
    return QuarantinedMailRows(old_info, params, {"sender", "subject", "time"});
}

}  // namespace serverlog::log::adminlog::mcp
