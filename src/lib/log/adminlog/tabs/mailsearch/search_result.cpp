#include "log/adminlog/tabs/mailsearch/search_result.h"

#include <mailserver-log/exception/exception.h>

#include "log/adminlog/tabs/common/moment_text.h"
#include "log/adminlog/tabs/mailsearch/templates.h"
#include "log/adminlog/toolkit/attachment.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <algorithm>

namespace serverlog::log::adminlog::mailsearch {

namespace {

/// Empty when nothing tells the number.
std::string NumberOfMails(Json::Value const& params, Json::Value const& body) {
    Json::Value const ids = GetObjectVal(params, "mail_ids");
    if (ids.isArray()) {
        return std::to_string(ids.size());
    }
    Json::Value const result = TryGetObjectVal(body, "result");
    Json::Value const deleted = TryGetObjectVal(result, "num_deleted_mail");
    Json::Value const all = TryGetObjectVal(result, "num_mails");
    if (!deleted.isNull() || !all.isIntegral()) {
        return deleted.asString();
    }
    Json::LargestUInt const failed = TryGetObjectVal(result, "num_failed_mail").asLargestUInt();
    return std::to_string(all.asLargestUInt() - std::min(all.asLargestUInt(), failed));
}

}  // namespace

Json::Value MailInfo(Json::Value const& params) {
    Json::Value query;
    for (char const* key : {"task_id", "mail_id"}) {
        query[key] = TryGetObjectVal(params, key);
        if (query[key].isNull()) {
            throw make_exception<ETag::Log>(LogError::LoadOldSettingsFail,
                                            "loading search task is lack of params");
        }
    }
    Json::Value const mail =
        LoadOldState("MERO.PostCubeServer.Audit.SearchTaskResult", "fetch_mail", query)["mail"];
    return mail.isObject() ? mail : Json::Value();
}

Json::Value DownloadMail(Json::Value const& params) {
    Json::Value info = MailInfo(params);
    info["force_log"] = true;
    return info;
}

StatementRows TranslateResultOperation(std::string const& statement, Json::Value const& old_info,
                                       Json::Value const& params, Json::Value const& /*diff*/,
                                       Json::Value const& body) {
    if (statement != kMailsDeleted && statement != kMailsExported) {
        return Ignore();
    }
    std::string const number = NumberOfMails(params, body);
    return number.empty() ? Ignore() : StatementRows{{number, GetKeyVal(old_info, "name")}};
}

StatementRows TranslateMailOperation(std::string const& statement, Json::Value const& old_info,
                                     Json::Value const& params, Json::Value const& /*diff*/,
                                     Json::Value const& /*body*/) {
    StatementRow row = {GetKeyVal(old_info, "subject"), GetKeyVal(old_info, "to_addr"),
                        MomentText("arrival_time", old_info)};
    if (statement == kMailDownloaded) {
        return {row};
    }
    if (statement == kAttachmentDownloaded) {
        row.insert(row.begin(), AttachmentName(GetObjectVal(old_info, "attachment"),
                                               GetKeyVal(params, "attachment_id")));
        return {row};
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::mailsearch
