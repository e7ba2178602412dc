#include <cerrno>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include "listing/selected_export.h"
#include "listing/selected_rows.h"
#include "listing/selection.h"
#include "output/html_document.h"
#include "output/output_target.h"
#include "output/progress.h"
#include "output/record_writer.h"
#include "output/standard_output.h"
#include "output/stdout_capture.h"
#include "process/failure.h"
#include "process/stop_signal.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

constexpr char kHtml[] = "html";

struct ExportOptions {
    Selection selection;
    std::string format = kHtml;
    std::string output;
    bool no_count = false;
};

/// Both give the number of rows that they wrote; what could not be written shows in `target`.
template <class Store>
std::uint64_t WriteRecords(SelectedRows<Store>& rows, const std::string& format,
                           OutputTarget& target, Progress& progress) {
    const auto writer = MakeRecordWriter<Store>(format, target.Stream());
    std::uint64_t count = 0;
    rows.ForEach([&](const auto& row) {
        writer->Write(row);
        ++count;
        progress.Show(count, count);
        return target.Stream().good();
    });
    writer->Finish();
    return count;
}

template <class Store>
std::uint64_t WriteHtml(const Selection& selection, OutputTarget& target, Progress& progress) {
    SelectedExport<Store> method(selection);
    HtmlDocument document;
    const StdoutCapture capture([&](std::string_view piece) {
        const std::string_view body = document.Take(piece);
        // A browser that saves the document leaves the headers out as well.
        const std::string_view wanted = target.IsFile() ? body : piece;
        target.Stream().write(wanted.data(), static_cast<std::streamsize>(wanted.size()));
        progress.Show(document.rows(), document.rows());
        errno = EIO;  // target knows better
        return target.Stream().good();
    });
    try {
        method.RunByJson();
    } catch (...) {
        target.Check();
        throw Failure("cannot export all of the " + selection.store +
                      " log: " + DescribeException() + "; see the mail log, and try again");
    }
    return document.rows();
}

void CheckPaging(const ExportOptions& options) {
    if (options.format == kHtml && (options.selection.limit >= 0 || options.selection.offset > 0)) {
        throw CLI::ValidationError(options.selection.limit >= 0 ? "--limit" : "--offset",
                                   "an HTML document has all rows; take --format csv or ndjson");
    }
}

template <class Store>
void Export(const ExportOptions& options) {
    CheckPaging(options);
    SelectedRows<Store> rows(options.selection);
    IgnoreBrokenPipe();
    const StopSignal stop;
    OutputTarget target(options.output, stop);
    const bool counts = Progress::OnTerminal() && !options.no_count;
    Progress progress("rows", counts ? rows.Count() : 0);
    const std::uint64_t count = options.format == kHtml
                                    ? WriteHtml<Store>(options.selection, target, progress)
                                    : WriteRecords<Store>(rows, options.format, target, progress);
    progress.Clear();
    target.Commit();
    std::cerr << "exported " << count << std::endl;
}

}  // namespace

void AddExport(CLI::App& program) {
    const auto options = std::make_shared<ExportOptions>();
    CLI::App* command = program.add_subcommand(
        "export", "Write the rows of a store as an HTML document, as CSV or as NDJSON");
    command->footer(
        std::string(kSelectionHelp) +
        "\nHTML is the document that the web API gives: on standard output with its HTTP headers "
        "in front, in a file without them. It has all rows and knows no --limit and --offset.\n"
        "In CSV a cell that a spreadsheet would take for a formula gets an apostrophe in front.");
    AddSelection(*command, options->selection);
    command
        ->add_option("--format", options->format, "html, csv or ndjson (which load takes) [html]")
        ->check(CLI::IsMember({kHtml, "csv", "ndjson"}));
    command
        ->add_option("--output", options->output,
                     "Make or replace this file, once all is written [standard output]")
        ->type_name("FILE");
    command->add_flag("--no-count", options->no_count,
                      "Do not count the rows first, which tells on a terminal how far it has got");
    command->callback([options] {
        VisitStore(options->selection.store,
                   [&options](auto store) { Export<decltype(store)>(*options); });
    });
}

}  // namespace serverlog::program
