#include <benchmark/benchmark.h>
#include <mailserver-log/webapi/api_runner.h>
#include <mailserver-log/webapi/emaillog/export.h>

#include <stdexcept>
#include <string>
#include <tuple>

#include "listing/selected_rows.h"
#include "measure.h"
#include "null_output.h"
#include "output/output_target.h"
#include "output/record_writer.h"
#include "raw_database.h"
#include "stores.h"

namespace bench {
namespace {

using serverlog::program::MailStore;

const std::string kNewestFirst = std::string("SELECT ") + kRawColumns +
                                 " FROM main.mail_log_table UNION ALL SELECT " + kRawColumns +
                                 " FROM DB1.mail_log_table ORDER BY date DESC";

void RequireAll(long rows) {
    if (rows != Sizes().current_rows + Sizes().long_term_rows) {
        throw std::runtime_error("not all rows came");
    }
}

// Stepping and the texts of the columns, nothing kept and nothing written.
void ExportRaw(benchmark::State& state) {
    RawDatabase files = OpenBothFiles();
    Measure(state, [&] { RequireAll(files.Prepare(kNewestFirst).StepThroughTexts()); });
}
BENCHMARK(ExportRaw)->Name("export/floor")->Unit(benchmark::kMillisecond);

// The same statement into a struct, which is what programs that write rows do without this library.
void ExportRawRecords(benchmark::State& state) {
    RawDatabase files = OpenBothFiles();
    Measure(state, [&] {
        RawStatement statement = files.Prepare(kNewestFirst);
        RawMail mail;
        long rows = 0;
        for (; statement.Step(); ++rows) {
            statement.Read(mail);
        }
        RequireAll(rows);
    });
}
BENCHMARK(ExportRawRecords)->Name("export/floor-records")->Unit(benchmark::kMillisecond);

void ExportHtml(benchmark::State& state) {
    Measure(state, [] {
        const NullOutput output;
        const auto result =
            serverlog::webapi::RunAPIMethod<serverlog::webapi::emaillog::Export>(Json::objectValue);
        if (std::get<0>(result) != 0) {
            throw std::runtime_error("the export failed");
        }
    });
}
BENCHMARK(ExportHtml)->Name("export/html")->Unit(benchmark::kMillisecond);

void ExportRecords(benchmark::State& state, const char* format) {
    serverlog::program::Selection selection;
    selection.store = MailStore::kName;
    serverlog::program::SelectedRows<MailStore> selected(selection);
    Measure(state, [&] {
        const NullOutput output;
        const serverlog::program::StopSignal stop;
        serverlog::program::OutputTarget target("", stop);
        const auto writer =
            serverlog::program::MakeRecordWriter<MailStore>(format, target.Stream());
        long rows = 0;
        selected.ForEach([&](const auto& row) {
            writer->Write(row);
            ++rows;
            return true;
        });
        writer->Finish();
        target.Commit();
        RequireAll(rows);
    });
}
BENCHMARK_CAPTURE(ExportRecords, csv, "csv")->Name("export/csv")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ExportRecords, ndjson, "ndjson")
    ->Name("export/ndjson")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
