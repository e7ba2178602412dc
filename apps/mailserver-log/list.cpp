#include <iostream>
#include <memory>
#include <string>

#include "listing/follower.h"
#include "listing/selected_rows.h"
#include "listing/selection.h"
#include "output/record_writer.h"
#include "output/standard_output.h"
#include "output/terminal_style.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

struct ListOptions {
    Selection selection;
    std::string format = "table";
    bool follow = false;
};

template <class Store>
void Follow(const ListOptions& options) {
    if (options.format == "json") {
        throw CLI::ValidationError("--format", "json has an end; take ndjson with --follow");
    }
    const auto writer = MakeRecordWriter<Store>(options.format, std::cout, TerminalStyle());
    Follower<Store>(options.selection, *writer, std::cout).Run();
    writer->Finish();
}

template <class Store>
void List(const ListOptions& options) {
    IgnoreBrokenPipe();
    if (options.follow) {
        Follow<Store>(options);
        return;
    }
    SelectedRows<Store> rows(options.selection);
    const auto writer = MakeRecordWriter<Store>(options.format, std::cout, TerminalStyle());
    rows.ForEach([&writer](const auto& row) {
        writer->Write(row);
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
    CLI::Option* follow = list->add_flag(
        "--follow", options->follow,
        "Show the last 10 rows, --limit of them or those since --since, the oldest first, then "
        "each row that is added, until SIGINT or SIGTERM");
    for (const char* other : {"--sort", "--ascending", "--offset", "--file"}) {
        follow->excludes(list->get_option(other));
    }
    list->callback([options] {
        VisitStore(options->selection.store,
                   [&options](auto store) { List<decltype(store)>(*options); });
    });
}

}  // namespace serverlog::program
