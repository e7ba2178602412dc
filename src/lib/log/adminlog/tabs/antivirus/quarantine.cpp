#include "log/adminlog/tabs/antivirus/quarantine.h"

#include "log/adminlog/tabs/antivirus/templates.h"
#include "log/adminlog/tabs/common/quarantined_mail.h"
#include "log/adminlog/toolkit/known_template.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::antivirus {

namespace {

constexpr char kApi[] = "MERO.PostCubeServer.Security.VirusQuarantine";

constexpr char const* kMailOperations[] = {kMailDeleted, kMailReleased};
constexpr char const* kDownloads[] = {kAttachmentDownloaded, kMcpAttachmentDownloaded};
constexpr char const* kDownloadsOfAll[] = {kAttachmentsDownloaded, kMcpAttachmentsDownloaded};

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
    return QuarantinedMailRows(old_info, params, {"sender", "subject"});
}

StatementRows TranslateDownloadAttach(std::string const& statement, Json::Value const& old_info,
                                      Json::Value const& params, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    if (!IsOneOf(statement, kDownloads)) {
        return Ignore();
    }
    return AttachmentRow(old_info, params, {"subject", "to", "time"});
}

StatementRows TranslateDownloadAllAttach(std::string const& statement, Json::Value const& old_info,
                                         Json::Value const& /*params*/, Json::Value const& /*diff*/,
                                         Json::Value const& /*body*/) {
    if (!IsOneOf(statement, kDownloadsOfAll)) {
        return Ignore();
    }
    return {
        {GetKeyVal(old_info, "subject"), GetKeyVal(old_info, "to"), GetKeyVal(old_info, "time")}};
}

}  // namespace serverlog::log::adminlog::antivirus
