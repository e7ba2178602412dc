#include <mailserver-log/webapi/securitylog/export.h>
#include <mailserver/html_escape.h>
#include <mds/localized_string_parser.h>

#include <iterator>

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

class RowWriter {
 public:
    void operator()(const record::SecurityLog& record, internal::ExportDocument& document) {
        const internal::TimeWords words = times_.Of(record.date);
        // Nothing but the subject is escaped, on purpose: see the class.
        document.Cell(words.date);
        document.Cell(words.time);
        document.Cell(record.src);
        document.Cell(record.sender);
        document.Cell(record.recipient);
        document.Cell(HtmlStrEscape(record.subject));
        document.Cell(record.type);
        document.Cell(record.host);
        document.Cell(record.event);
    }

 private:
    internal::TimeFormat times_;
};

}  // namespace

Export::Export(MERO::APIRequest* request, MERO::APIResponse* response) : List(request, response) {
    DisableOutput();
}

Export::Export(const Json::Value& params) : List(params) {}

std::tuple<int, Json::Value> Export::Execute() {
    internal::WithStoreAsRoot<db::SecurityLogDB>(
        db_path_, "export postcube server security log record", [this](db::SecurityLogDB& store) {
            record::SecurityLog record;
            db::UnionAllSelectQuery query = DbStepList(store, record);
            ExportLog(query, record);
        });
    return {0, Json::objectValue};
}

db::UnionAllSelectQuery Export::DbStepList(db::SecurityLogDB& db, record::SecurityLog& record) {
    return StepStore(db, record);
}

void Export::ExportLog(db::UnionAllSelectQuery& query, record::SecurityLog& record) {
    internal::ExportTexts texts;
    texts.product = MDS::LocalizedStringParser::ParseTexts(log::adminlog::kPostCubeTexts + lang_);
    texts.system = MDS::LocalizedStringParser::ParseTexts(log::adminlog::kSystemTexts + lang_);
    internal::WriteExport(kLayout, texts, query, record, RowWriter());
}

}  // namespace serverlog::webapi::securitylog
