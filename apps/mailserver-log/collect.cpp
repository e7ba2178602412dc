#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "collect/admin_log_store.h"
#include "collect/collector.h"
#include "collect/rejected_log.h"
#include "input/confirm_source.h"
#include "input/input.h"
#include "input/journal_source.h"
#include "input/socket_source.h"
#include "input/stream_source.h"
#include "mail_events/mail_collector.h"
#include "mail_events/mail_event_store.h"
#include "mail_events/state_file.h"
#include "process/retry.h"
#include "process/stop_signal.h"
#include "stores/store_check.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

const std::string kRejectedPath = std::string(db::kSpoolFolder) + "rejected.log";
const std::string kJournalPlacePath = std::string(db::kSpoolFolder) + "journal.place";
const std::string kRejectedMailPath = std::string(db::kSpoolFolder) + "rejected_mail.log";
const std::string kMailJournalPlacePath = std::string(db::kSpoolFolder) + "mail_journal.place";

// The admin log has a priority of its own.
constexpr JournalSelection kAdminLines = {"emerg..emerg", false};
constexpr JournalSelection kMailLines = {"alert..debug", true};

struct CollectOptions {
    std::string input = "-";
    std::string socket;
    bool mail = false;
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
        return std::make_unique<JournalSource>(
            options.mail ? kMailLines : kAdminLines,
            options.mail ? kMailJournalPlacePath : kJournalPlacePath, options.once, stop, retry);
    }
    if (!options.socket.empty()) {
        auto source = std::make_unique<SocketSource>(options.socket, options.once, stop);
        std::cerr << "mailserver-log: listening on " << options.socket << std::endl;
        return source;
    }
    return std::make_unique<StreamSource>(OpenInput(options.input), stop);
}

// With confirmations standard output belongs to rsyslog.
std::ostream& SummaryStream(const CollectOptions& options) {
    return options.confirm ? std::cerr : std::cout;
}

template <class AnyCollector>
void RunAndSum(AnyCollector& collector, const CollectOptions& options) {
    try {
        collector.Run();
    } catch (...) {
        SummaryStream(options) << collector.Summary() << std::endl;
        throw;
    }
    SummaryStream(options) << collector.Summary() << std::endl;
}

void CollectAdminLines(const CollectOptions& options, MessageSource& source, Retry& retry) {
    AdminLogStore store;
    const RejectedLog rejected_log(kRejectedPath);
    Collector collector(source, store, rejected_log, retry, std::cerr);
    RunAndSum(collector, options);
}

void CollectMailEvents(const CollectOptions& options, MessageSource& source, Retry& retry) {
    MailEventStore store;
    const RejectedLog rejected_log(kRejectedMailPath);
    MailCollector collector(source, store, rejected_log, retry, std::cerr);
    RunAndSum(collector, options);
    if (!collector.Skipped().empty()) {
        std::cerr << "mailserver-log: skipped lines by program: " << collector.Skipped()
                  << std::endl;
    }
}

void RunCollect(const CollectOptions& options) {
    CheckWriteAccess(options.mail ? std::vector<std::string>{MailStore::kPath, SecurityStore::kPath,
                                                             state_file::kPath}
                                  : std::vector<std::string>{AdminStore::kPath});
    // A reader that went away shows as a failed write.
    signal(SIGPIPE, SIG_IGN);
    const StopSignal stop;
    Retry retry(stop, std::cerr);
    const std::unique_ptr<MessageSource> source = MakeSource(options, stop, retry);
    if (options.mail) {
        CollectMailEvents(options, *source, retry);
    } else {
        CollectAdminLines(options, *source, retry);
    }
}

}  // namespace

void AddCollect(CLI::App& program) {
    const auto options = std::make_shared<CollectOptions>();
    CLI::App* collect =
        program.add_subcommand("collect", "Store the lines of a system log as rows of the logs");
    collect->footer(
        "Without --mail it takes the admin log lines, and keeps one that cannot be read in " +
        kRejectedPath +
        ". With --mail it takes the lines of Postfix and its filters and keeps "
        "what it knows of mails in flight in " +
        state_file::kPath +
        ". While the store is busy or cannot be written, it is tried again; only a store folder "
        "that is missing at the start ends the program. SIGTERM ends it once all that was read is "
        "stored.");
    collect->add_flag("--mail", options->mail,
                      "Take the lines of a mail server: rows of the mail and the security log");
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
