#include <memory>
#include <string>

#include "stores/loader.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

void AddLoad(CLI::App& program) {
    const auto options = std::make_shared<LoadOptions>();
    CLI::App* load = program.add_subcommand("load", "Insert records from NDJSON into a store");
    load->footer(
        "NDJSON is one JSON object a line, its members named after the columns. A missing member "
        "takes its default, an empty line is passed over.");
    load->add_option("STORE", options->store, "admin, mail or security")
        ->required()
        ->check(CLI::IsMember({AdminStore::kName, MailStore::kName, SecurityStore::kName}));
    load->add_option("FILE", options->path, "File to read; - is standard input [-]");
    load->add_option("--batch", options->batch, "Rows in one transaction [1000]")
        ->type_name("N")
        ->check(CLI::Range(std::size_t{1}, std::size_t{1000000}));
    load->add_flag("--keep-going", options->keep_going,
                   "Tell about a line that cannot be read and go on; the exit status is 1 all the "
                   "same");
    load->callback([options] {
        VisitStore(options->store,
                   [&options](auto store) { Loader<decltype(store)>(*options).Run(); });
    });
}

}  // namespace serverlog::program
