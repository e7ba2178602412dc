#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "record_writer.h"
#include "selected_rows.h"
#include "selection.h"
#include "standard_output.h"
#include "stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

struct ListOptions {
    Selection selection;
    std::string format = "table";
};

TableWriter::Style TerminalStyle() {
    TableWriter::Style style;
    winsize size = {};
    if (isatty(STDOUT_FILENO) == 0) {
        return style;
    }
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
        style.width = size.ws_col;
    }
    // https://no-color.org: any value that is not empty.
    const char* no_color = std::getenv("NO_COLOR");
    style.with_colours = no_color == nullptr || *no_color == '\0';
    return style;
}

template <class Store>
void List(const ListOptions& options) {
    SelectedRows<Store> rows(options.selection);
    IgnoreBrokenPipe();
    const auto writer = MakeRecordWriter<Store>(options.format, std::cout, TerminalStyle());
    rows.ForEach([&writer](const auto& record) {
        writer->Write(record);
        return std::cout.good();
    });
    writer->Finish();
}

}  // namespace

void AddList(CLI::App& program) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App* list = program.add_subcommand(
        "list", "List the rows of a store and of its long-term file, the newest first");
    list->footer(kSelectionHelp);
    AddSelection(*list, options->selection);
    list->add_option("--format", options->format,
                     "table, json, ndjson (which load takes) or csv [table]")
        ->check(CLI::IsMember({"table", "json", "ndjson", "csv"}));
    list->callback([options] {
        VisitStore(options->selection.store,
                   [&options](auto store) { List<decltype(store)>(*options); });
    });
}

}  // namespace serverlog::program
