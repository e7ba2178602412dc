#pragma once

#include <json/value.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/webapi/emaillog/list.h>

#include <tuple>

namespace serverlog::webapi::emaillog {

/// Writes all rows of the mail log that a search finds to standard output, as adminlog::Export_v1
/// does for its log; of the values only the subject is escaped. Takes the parameters of List. The
/// labels are the product's English texts in both forms.
class MAILSERVER_LOG_EXPORT Export : public List {
 public:
    /// The request form. The frame writes no reply of its own.
    Export(MERO::APIRequest* request, MERO::APIResponse* response);

    /// The JSON form.
    explicit Export(const Json::Value& params);

    /// Returns 0 and an empty object once the document is written.
    std::tuple<int, Json::Value> Execute() override;

 private:
    db::UnionAllSelectQuery DbStepList(db::MailLogDB& db, record::MailLog& record);
    void ExportLog(db::UnionAllSelectQuery& query, record::MailLog& record);
};

}  // namespace serverlog::webapi::emaillog
