#pragma once

#include <json/value.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/row_view.h>
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

    /// Prepares all rows that the search finds, for reading one by one; fails as LisTable does.
    /// @param record  gets each row; must outlive the result, as `db` must
    db::UnionAllSelectQuery DbStepList(db::MailLogDB& db, record::MailLog& record);

    /// Runs such a query and writes the document of its rows.
    void ExportLog(db::UnionAllSelectQuery& query, record::MailLog& record);

 private:
    // With these Execute does it: copies of the texts are 8 % of the instructions of an export.
    using Row = record::RowView<record::MailLog>;
    db::UnionAllSelectQuery DbStepList(db::MailLogDB& db, Row& row);
    void ExportLog(db::UnionAllSelectQuery& query, Row& row);
};

}  // namespace serverlog::webapi::emaillog
