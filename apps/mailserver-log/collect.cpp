#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>

#include "collect/admin_log_store.h"
#include "collect/collector.h"
#include "collect/rejected_log.h"
#include "input/confirm_source.h"
#include "input/input.h"
#include "input/journal_source.h"
#include "input/socket_source.h"
#include "input/stream_source.h"
#include "process/retry.h"
#include "process/stop_signal.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

const std::string kRejectedPath = std::string(db::kSpoolFolder) + "rejected.log";
const std::string kJournalPlacePath = std::string(db::kSpoolFolder) + "journal.place";

struct CollectOptions {
    std::string input = "-";
    std::string socket;
    bool journal = false;
    bool confirm = false;
    bool once = false;
};

std::unique_ptr<MessageSource> MakeSource(const CollectOptions& options, const StopSignal& stop,
                                          Retry& retry) {
    if (options.confirm) {
        return std::make_unique<ConfirmSource>(STDIN_FILENO, STDOUT_FILENO, stop);
    }
    if (options.journal) {
        return std::make_unique<JournalSource>(kJournalPlacePath, options.once, stop, retry);
    }
    if (!options.socket.empty()) {
        auto source = std::make_unique<SocketSource>(options.socket, options.once, stop);
        std::cerr << "mailserver-log: listening on " << options.socket << std::endl;
        return source;
    }
    return std::make_unique<StreamSource>(OpenInput(options.input), stop);
}

void RunCollect(const CollectOptions& options) {
    AdminLogStore::CheckAccess();
    // A reader that went away shows as a failed write.
    signal(SIGPIPE, SIG_IGN);
    const StopSignal stop;
    Retry retry(stop, std::cerr);
    AdminLogStore store;
    const RejectedLog rejected_log(kRejectedPath);
    const std::unique_ptr<MessageSource> source = MakeSource(options, stop, retry);
    Collector collector(*source, store, rejected_log, retry, std::cerr);
    // With confirmations standard output belongs to rsyslog.
    std::ostream& summary = options.confirm ? std::cerr : std::cout;
    try {
        collector.Run();
    } catch (...) {
        summary << collector.Summary() << std::endl;
        throw;
    }
    summary << collector.Summary() << std::endl;
}

}  // namespace

void AddCollect(CLI::App& program) {
    const auto options = std::make_shared<CollectOptions>();
    CLI::App* collect = program.add_subcommand(
        "collect", "Store the admin log lines of a system log as rows of the admin log");
    collect->footer(
        "A line that cannot be read is kept in " + kRejectedPath +
        ". While the store is busy or cannot be written, it is tried again; only a store folder "
        "that is missing at the start ends the program. SIGTERM ends it once all that was read is "
        "stored.");
    auto* input = collect->add_option("--input", options->input, "Read this file [standard input]")
                      ->type_name("FILE");
    auto* journal = collect
                        ->add_flag("--journal", options->journal,
                                   "Read the systemd journal, from where the last run ended")
                        ->excludes(input);
    auto* socket = collect
                       ->add_option("--socket", options->socket,
                                    "Make this datagram socket, as /dev/log is one, and read it")
                       ->type_name("PATH")
                       ->excludes(input)
                       ->excludes(journal);
    collect
        ->add_flag("--confirm", options->confirm,
                   "Confirm each line on standard output, as rsyslog's omprog has it "
                   "(confirmMessages=\"on\")")
        ->excludes(input)
        ->excludes(journal)
        ->excludes(socket);
    collect->add_flag("--once", options->once,
                      "With --journal, end with its newest entry; with --socket, end as soon as "
                      "nothing waits after a first line. A file or pipe ends by itself");
    collect->callback([options] { RunCollect(*options); });
}

}  // namespace serverlog::program
