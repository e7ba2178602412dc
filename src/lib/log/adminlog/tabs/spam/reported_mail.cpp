#include "log/adminlog/tabs/spam/reported_mail.h"

#include "log/adminlog/tabs/common/quarantined_mail.h"
#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/known_template.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::spam {

namespace {

constexpr char const* kMailOperations[] = {kHamDeleted, kSpamDeleted, kLearnedAsHam,
                                           kLearnedAsSpam};
constexpr char const* kLearnAll[] = {kAllLearnedAsHam, kAllLearnedAsSpam};
constexpr char const* kDownloads[] = {kHamAttachmentDownloaded, kSpamAttachmentDownloaded};
constexpr char const* kDownloadsOfAll[] = {kHamAttachmentsDownloaded, kSpamAttachmentsDownloaded};

}  // namespace

Json::Value SpamMailInfo(Json::Value const& params) {
    return LoadDownloadedMail("MERO.PostCubeServer.Spam.ReportedSpam", params);
}

Json::Value HamMailInfo(Json::Value const& params) {
    return LoadDownloadedMail("MERO.PostCubeServer.Spam.ReportedHam", params);
}

StatementRows TranslateAutoLearnMailOperation(std::string const& statement,
                                              Json::Value const& /*old_info*/,
                                              Json::Value const& params,
                                              Json::Value const& /*diff*/,
                                              Json::Value const& /*body*/) {
    Json::Value const& mails = params["mail_uid_list"];
    if (!IsOneOf(statement, kMailOperations) || !mails.isArray() || mails.empty()) {
        return Ignore();
    }
    return {{std::to_string(mails.size())}};
}

StatementRows TranslateAutoLearnMailLearnAll(std::string const& statement,
                                             Json::Value const& /*old_info*/,
                                             Json::Value const& params, Json::Value const& /*diff*/,
                                             Json::Value const& /*body*/) {
    if (!IsOneOf(statement, kLearnAll)) {
        return Ignore();
    }
    return {{GetKeyVal(params, "keyword")}};
}

StatementRows TranslateAutoLearnAttachDownload(std::string const& statement,
                                               Json::Value const& old_info,
                                               Json::Value const& params,
                                               Json::Value const& /*diff*/,
                                               Json::Value const& /*body*/) {
    if (!IsOneOf(statement, kDownloads)) {
        return Ignore();
    }
    return AttachmentRow(old_info, params, {"from", "subject"});
}

StatementRows TranslateAutoLearnAllAttachDownload(std::string const& statement,
                                                  Json::Value const& old_info,
                                                  Json::Value const& /*params*/,
                                                  Json::Value const& /*diff*/,
                                                  Json::Value const& /*body*/) {
    if (!IsOneOf(statement, kDownloadsOfAll)) {
        return Ignore();
    }
    return {{GetKeyVal(old_info, "from"), GetKeyVal(old_info, "subject")}};
}

}  // namespace serverlog::log::adminlog::spam
