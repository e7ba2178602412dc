#include "trace/trace_writer.h"

#include <utility>
#include <vector>

#include "listing/named_cells.h"
#include "output/json_writer.h"
#include "stores/stores.h"
#include "trace/trace_json.h"

namespace serverlog::program {

namespace {

// One column of the table, and what stands in it for a row of each store.
struct Column {
    const char* heading;
    const char* mail;
    const char* security;
};

constexpr Column kColumns[] = {
    {"DATE", "date", "date"},
    {"WHAT", "status", "type"},
    {"FROM", "mail_from", "sender"},
    {"TO", "mail_to", "recipient"},
    {"ORIGINAL TO", "ori_mail_to", nullptr},
    {"QUEUE ID", "queue_id", nullptr},
    {"HOST", "host", "src"},
    {"SUBJECT", "subject", "subject"},
    {"MESSAGE ID OR EVENT", "message_id", "event"},
};

class JsonTraceWriter : public TraceWriter {
 public:
    explicit JsonTraceWriter(std::ostream& out) : json_(out, JsonWriter::Form::kArray) {}
    void Write(const record::MailLog& row) override { json_.Write(TraceJson(row)); }
    void Write(const record::SecurityLog& row) override { json_.Write(TraceJson(row)); }
    void Finish() override { json_.Finish(); }

 private:
    JsonWriter json_;
};

class TableTraceWriter : public TraceWriter {
 public:
    TableTraceWriter(std::ostream& out, TableWriter::Style style)
        : table_(out, Headings(), style),
          mail_(Names(&Column::mail)),
          security_(Names(&Column::security)) {}
    void Write(const record::MailLog& row) override { table_.Write(mail_.Of(row)); }
    void Write(const record::SecurityLog& row) override { table_.Write(security_.Of(row)); }
    void Finish() override { table_.Finish(); }

 private:
    static std::vector<std::string> Headings() {
        std::vector<std::string> headings;
        for (const Column& column : kColumns) {
            headings.emplace_back(column.heading);
        }
        return headings;
    }

    static std::vector<const char*> Names(const char* Column::*store) {
        std::vector<const char*> names;
        for (const Column& column : kColumns) {
            names.push_back(column.*store);
        }
        return names;
    }

    TableWriter table_;
    NamedCells<MailStore> mail_;
    NamedCells<SecurityStore> security_;
};

}  // namespace

std::unique_ptr<TraceWriter> MakeTraceWriter(const std::string& format, std::ostream& out,
                                             TableWriter::Style style) {
    if (format == "json") {
        return std::make_unique<JsonTraceWriter>(out);
    }
    return std::make_unique<TableTraceWriter>(out, style);
}

}  // namespace serverlog::program
