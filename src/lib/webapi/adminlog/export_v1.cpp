#include <mailserver-log/webapi/adminlog/export_v1.h>

#include <iterator>

#include "webapi/base_db_query_api_definitions.h"
#include "webapi/export_document.h"
#include "webapi/time_words.h"

namespace serverlog::webapi::adminlog {

namespace {

constexpr char kCentered[] = "<td style='text-align: center'>";
constexpr char kEnd[] = "</td>\n";

constexpr internal::ExportColumn kColumns[] = {
    {{"maillog", "tabtype"}, kCentered, kEnd},
    {{"maillog", "event_desc"}, "<td>", kEnd},
    {{"common", "user"}, kCentered, kEnd},
    {{"maillog", "date"}, kCentered, kEnd, {"maillog", "time"}},
    {{"maillog", "user_ip"}, kCentered, kEnd},
    {{"maillog", "zs_host_name"}, kCentered, kEnd},
};

constexpr internal::ExportLayout kLayout = {
    "Content-Type: text/html; charset=utf-8\n",
    "admin_log.html",
    {"maillog", "admin_log"},
    /*flushes_rows=*/false,
    kColumns,
    std::size(kColumns),
};

}  // namespace

Export_v1::Export_v1(MERO::APIRequest* request, MERO::APIResponse* response)
    : List_v1(request, response) {
    DisableOutput();
}

Export_v1::Export_v1(const Json::Value& params) : List_v1(params) {}

void Export_v1::SetTestString(const Json::Value& titles, const Json::Value& texts) {
    tab_titles_ = titles;
    texts_ = texts;
}

std::tuple<int, Json::Value> Export_v1::Execute() {
    internal::WithStoreAsRoot<db::AdminLogDB>(
        db_path_, "export postcube server admin log record", [this](db::AdminLogDB& store) {
            record::AdminLog record;
            db::UnionAllSelectQuery query = DbStepList(store, record);
            ExportLog(query, record);
        });
    return {0, Json::objectValue};
}

db::UnionAllSelectQuery Export_v1::DbStepList(db::AdminLogDB& db, record::AdminLog& record) {
    return StepStore(db, record);
}

void Export_v1::ExportLog(db::UnionAllSelectQuery& query, record::AdminLog& record) {
    const internal::ExportTexts texts = {texts_, Json::Value()};
    const Json::Value& titles = tab_titles_;
    internal::TimeFormat times;
    const auto write_row = [&](const record::AdminLog& row, internal::ExportDocument& document) {
        // Nothing but the statement is escaped, on purpose: see the class.
        document.Cell(titles[std::to_string(row.tab_type)].asString());
        document.EscapedCell(row.statement);
        document.Cell(row.user);
        document.Cell(times.TextOf(static_cast<long>(row.date)));
        document.Cell(row.ip);
        document.Cell(row.server);
    };
    internal::WriteExport(kLayout, texts, query, record, write_row);
}

}  // namespace serverlog::webapi::adminlog
