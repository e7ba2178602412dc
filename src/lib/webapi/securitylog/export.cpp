#include <mailserver-log/webapi/securitylog/export.h>
#include <mds/localized_string_parser.h>

#include <iterator>
#include <string>
#include <string_view>

#include "log/adminlog/toolkit/texts.h"
#include "webapi/base_db_query_api_definitions.h"
#include "webapi/export_document.h"
#include "webapi/time_words.h"

namespace serverlog::webapi::securitylog {

namespace {

constexpr char kBegin[] = "<td align=\"center\">";
constexpr char kEnd[] = "</td>";
constexpr char kEndOfLine[] = "</td>\n";

// The subject stands under the title of a rule's target, the host under the name of a server.
constexpr internal::ExportColumn kColumns[] = {
    {{"maillog", "date"}, kBegin, kEndOfLine},
    {{"maillog", "time"}, kBegin, kEndOfLine},
    {{"maillog", "source"}, kBegin, kEnd},
    {{"maillog", "mail_from"}, kBegin, kEnd},
    {{"maillog", "mail_to"}, kBegin, kEnd},
    {{"mcp", "mcp_rule_target_title"}, kBegin, kEnd},
    {{"log", "log_type", /*is_system_text=*/true}, kBegin, kEnd},
    {{"common", "server_name"}, kBegin, kEnd},
    {{"log", "log_action", /*is_system_text=*/true}, kBegin, kEnd},
};

constexpr internal::ExportLayout kLayout = {
    "Content-Type:application/octet-stream\n",
    "merosecuritylog.html",
    {"maillog", "security_log"},
    /*flushes_rows=*/true,
    kColumns,
    std::size(kColumns),
};

using record::SecurityLog;
using Row = record::RowView<SecurityLog>;

class RowWriter {
 public:
    void operator()(const Row& row, internal::ExportDocument& document) {
        const internal::TimeWords words = times_.Of(row.Of<&SecurityLog::date>());
        // Nothing but the subject is escaped, on purpose: see the class.
        document.Cell(words.date);
        document.Cell(words.time);
        document.Cell(row.Of<&SecurityLog::src>());
        document.Cell(row.Of<&SecurityLog::sender>());
        document.Cell(row.Of<&SecurityLog::recipient>());
        document.EscapedCell(row.Of<&SecurityLog::subject>());
        document.Cell(row.Of<&SecurityLog::type>());
        document.Cell(row.Of<&SecurityLog::host>());
        document.Cell(row.Of<&SecurityLog::event>());
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
    texts.system = MDS::LocalizedStringParser::ParseTexts(log::adminlog::kSystemTexts + language);
    internal::WriteExport(kLayout, texts, query, fetched, RowWriter());
}

}  // namespace

Export::Export(MERO::APIRequest* request, MERO::APIResponse* response) : List(request, response) {
    DisableOutput();
}

Export::Export(const Json::Value& params) : List(params) {}

std::tuple<int, Json::Value> Export::Execute() {
    internal::WithStoreAsRoot<db::SecurityLogDB>(
        db_path_, "export postcube server security log record", [this](db::SecurityLogDB& store) {
            Row row;
            db::UnionAllSelectQuery query = DbStepList(store, row);
            ExportLog(query, row);
        });
    return {0, Json::objectValue};
}

db::UnionAllSelectQuery Export::DbStepList(db::SecurityLogDB& db, SecurityLog& record) {
    return StepStore(db, record);
}

db::UnionAllSelectQuery Export::DbStepList(db::SecurityLogDB& db, Row& row) {
    return StepStore(db, row);
}

void Export::ExportLog(db::UnionAllSelectQuery& query, SecurityLog& record) {
    WriteLog(lang_, query, record);
}

void Export::ExportLog(db::UnionAllSelectQuery& query, Row& row) {
    WriteLog(lang_, query, row);
}

}  // namespace serverlog::webapi::securitylog
