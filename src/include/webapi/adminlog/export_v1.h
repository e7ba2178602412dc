#pragma once

#include <json/value.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/adminlog/admin_log.h>
#include <mailserver-log/webapi/adminlog/list_v1.h>

#include <tuple>

namespace serverlog::webapi::adminlog {

/// Writes all rows of the admin log that a search finds to standard output: HTTP headers, then an
/// HTML document, in the English texts of the product. Memory does not grow with the rows.
///
/// Takes the parameters of List_v1; "offset" and "limit" have no effect. Only the statement is
/// escaped for HTML; the other values go out as they are stored, on purpose: clients hand the
/// document on as a file and do not show it themselves.
///
/// One export at a time in a process, since standard output is the answer. A failure, also one to
/// write (std::system_error), is thrown and leaves a document that is cut short. A process that
/// wants to outlive a client that goes away ignores SIGPIPE.
class MAILSERVER_LOG_EXPORT Export_v1 : public List_v1 {
 public:
    /// The request form. The frame writes no reply of its own.
    Export_v1(MERO::APIRequest* request, MERO::APIResponse* response);

    /// The JSON form. Its document has no titles and labels but those of SetTestString.
    explicit Export_v1(const Json::Value& params);

    /// Returns 0 and an empty object once the document is written.
    std::tuple<int, Json::Value> Execute() override;

    /// Gives the tab titles as List_v1 does, and the texts of the document's labels: an object of
    /// sections, each an object from keys to texts.
    void SetTestString(const Json::Value& titles, const Json::Value& texts);

 private:
    db::UnionAllSelectQuery DbStepList(db::AdminLogDB& db, record::AdminLog& record);
    void ExportLog(db::UnionAllSelectQuery& query, record::AdminLog& record);
};

}  // namespace serverlog::webapi::adminlog
