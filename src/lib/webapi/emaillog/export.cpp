#include <mailserver-log/webapi/emaillog/export.h>
#include <mailserver/html_escape.h>
#include <mds/localized_string_parser.h>

#include <iterator>

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

class RowWriter {
 public:
    void operator()(const record::MailLog& record, internal::ExportDocument& document) {
        const internal::TimeWords words = times_.Of(record.date);
        // Nothing but the subject is escaped, on purpose: see the class.
        document.Cell(record.message_id);
        document.Cell(words.date);
        document.Cell(words.time);
        document.Cell(record.mail_from);
        document.Cell(record.mail_to);
        document.Cell(record.ori_mail_to.empty() ? std::string_view("-") : record.ori_mail_to);
        document.Cell(HtmlStrEscape(record.subject));
        document.Cell(utils::SizeToKb(record.size));
        document.Cell(record.host);
        document.Cell(List::StatusInt2Str(record.status));
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
    internal::WithStoreAsRoot<db::MailLogDB>(
        db_path_, "export postcube server mail log record", [this](db::MailLogDB& store) {
            record::MailLog record;
            db::UnionAllSelectQuery query = DbStepList(store, record);
            ExportLog(query, record);
        });
    return {0, Json::objectValue};
}

db::UnionAllSelectQuery Export::DbStepList(db::MailLogDB& db, record::MailLog& record) {
    return StepStore(db, record);
}

void Export::ExportLog(db::UnionAllSelectQuery& query, record::MailLog& record) {
    internal::ExportTexts texts;
    texts.product = MDS::LocalizedStringParser::ParseTexts(log::adminlog::kPostCubeTexts + lang_);
    internal::WriteExport(kLayout, texts, query, record, RowWriter());
}

}  // namespace serverlog::webapi::emaillog
