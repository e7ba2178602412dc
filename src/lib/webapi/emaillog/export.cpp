#include <mailserver-log/webapi/emaillog/export.h>
#include <mds/localized_string_parser.h>

#include <iterator>
#include <string>
#include <string_view>

#include "log/adminlog/toolkit/texts.h"
#include "utils/strings.h"
#include "webapi/base_db_query_api_definitions.h"
#include "webapi/export_document.h"
#include "webapi/time_words.h"

namespace serverlog::webapi::emaillog {

namespace {

constexpr char kBegin[] = "<td align=\"center\">";
constexpr char kEnd[] = "</td>";
constexpr char kEndOfLine[] = "</td>\n";

// The subject stands under the title of a rule's target, the host under the name of a server.
constexpr internal::ExportColumn kColumns[] = {
    {{"maillog", "message_id"}, kBegin, kEndOfLine},
    {{"maillog", "date"}, kBegin, kEndOfLine},
    {{"maillog", "time"}, kBegin, kEndOfLine},
    {{"maillog", "mail_from"}, kBegin, kEnd},
    {{"maillog", "mail_to"}, kBegin, kEnd},
    {{"maillog", "ori_recipient"}, kBegin, kEnd},
    {{"mcp", "mcp_rule_target_title"}, kBegin, kEndOfLine},
    {{"maillog", "mail_size"}, kBegin, kEnd},
    {{"common", "server_name"}, kBegin, kEnd},
    {{"maillog", "mail_status"}, kBegin, kEnd},
};

constexpr internal::ExportLayout kLayout = {
    "Content-Type:application/octet-stream\n",
    "meromaillog.html",
    {"maillog", "mail_log"},
    /*flushes_rows=*/true,
    kColumns,
    std::size(kColumns),
};

using record::MailLog;
using Row = record::RowView<MailLog>;

class RowWriter {
 public:
    void operator()(const Row& row, internal::ExportDocument& document) {
        const internal::TimeWords words = times_.Of(row.Of<&MailLog::date>());
        // Nothing but the subject is escaped, on purpose: see the class.
        document.Cell(row.Of<&MailLog::message_id>());
        document.Cell(words.date);
        document.Cell(words.time);
        document.Cell(row.Of<&MailLog::mail_from>());
        document.Cell(row.Of<&MailLog::mail_to>());
        const std::string_view original = row.Of<&MailLog::ori_mail_to>();
        document.Cell(original.empty() ? "-" : original);
        document.EscapedCell(row.Of<&MailLog::subject>());
        document.Cell(utils::SizeToKb(row.Of<&MailLog::size>()));
        document.Cell(row.Of<&MailLog::host>());
        document.Cell(List::StatusInt2Str(row.Of<&MailLog::status>()));
    }

 private:
    internal::TimeFormat times_;
};

/// The document of a query that fetches into a record or a view of the row.
template <class Fetched>
void WriteLog(const std::string& language, db::UnionAllSelectQuery& query, const Fetched& fetched) {
    internal::ExportTexts texts;
    texts.product =
        MDS::LocalizedStringParser::ParseTexts(log::adminlog::kPostCubeTexts + language);
    internal::WriteExport(kLayout, texts, query, fetched, RowWriter());
}

}  // namespace

Export::Export(MERO::APIRequest* request, MERO::APIResponse* response) : List(request, response) {
    DisableOutput();
}

Export::Export(const Json::Value& params) : List(params) {}

std::tuple<int, Json::Value> Export::Execute() {
    internal::WithStoreAsRoot<db::MailLogDB>(
        db_path_, "export postcube server mail log record", [this](db::MailLogDB& store) {
            Row row;
            db::UnionAllSelectQuery query = DbStepList(store, row);
            ExportLog(query, row);
        });
    return {0, Json::objectValue};
}

db::UnionAllSelectQuery Export::DbStepList(db::MailLogDB& db, MailLog& record) {
    return StepStore(db, record);
}

db::UnionAllSelectQuery Export::DbStepList(db::MailLogDB& db, Row& row) {
    return StepStore(db, row);
}

void Export::ExportLog(db::UnionAllSelectQuery& query, MailLog& record) {
    WriteLog(lang_, query, record);
}

void Export::ExportLog(db::UnionAllSelectQuery& query, Row& row) {
    WriteLog(lang_, query, row);
}

}  // namespace serverlog::webapi::emaillog
