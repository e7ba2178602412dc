#include <iostream>
#include <memory>
#include <string>

#include "listing/selection.h"
#include "output/display_text.h"
#include "output/standard_output.h"
#include "output/terminal_style.h"
#include "process/failure.h"
#include "stores/stores.h"
#include "subcommands.h"
#include "trace/found_mails.h"
#include "trace/mail_search.h"
#include "trace/trace_store.h"
#include "trace/trace_target.h"
#include "trace/trace_writer.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

struct TraceOptions {
    std::string what;
    std::string since;
    std::string until;
    std::string format = "table";
};

// Writes the rows of both stores by date; of one date those of the security store first, since what
// they tell of happens on a mail's way in. Whether there was any.
template <class IsWanted>
bool WriteByDate(RowCursor<MailStore>& mails, RowCursor<SecurityStore>& events, IsWanted is_wanted,
                 TraceWriter& writer) {
    const auto next_event = [&] {
        while (TraceStore<SecurityStore>::Next(events)) {
            if (is_wanted(events.Row())) {
                return true;
            }
        }
        return false;
    };
    bool has_mail = TraceStore<MailStore>::Next(mails);
    bool has_event = next_event();
    const bool has_any = has_mail || has_event;
    while ((has_mail || has_event) && std::cout.good()) {
        if (has_event && (!has_mail || events.Row().date <= mails.Row().date)) {
            writer.Write(events.Row());
            has_event = next_event();
        } else {
            writer.Write(mails.Row());
            has_mail = TraceStore<MailStore>::Next(mails);
        }
    }
    return has_any;
}

void Trace(const TraceOptions& options) {
    IgnoreBrokenPipe();
    const TraceTarget target(options.what);
    const Condition times = TimeCondition(options.since, options.until);
    TraceStore<MailStore> mail_store;
    TraceStore<SecurityStore> security_store;
    const FoundMails found = MailSearch(mail_store, times).Find(target);
    const auto is_wanted = [&](const record::SecurityLog& event) {
        return target.IsAddress(event.sender) || target.IsAddress(event.recipient) ||
               found.Concerns(event) || target.IsNamedIn(event.event);
    };
    const auto writer = MakeTraceWriter(options.format, std::cout, TerminalStyle());
    const auto write = [&](const Condition& events_wanted) {
        RowCursor<MailStore> mails =
            mail_store.FindByDate((target.MailAddresses() || found.MailRows()) && times);
        RowCursor<SecurityStore> events = security_store.FindByDate(events_wanted && times);
        return WriteByDate(mails, events, is_wanted, *writer);
    };
    const Condition events = target.SecurityAddresses() || found.SecurityRows();
    // A mail that was refused is known from events alone. They have no index; a search for a queue
    // id takes its time anyway, any other looks there last.
    const bool is_found = target.MayBeQueueId() ? write(events || target.Events())
                                                : write(events) || write(target.Events());
    if (!is_found) {
        throw Failure("the logs know nothing of " + VisibleText(options.what) +
                      "; check its spelling, and with \"mailserver-log status\" how far back they "
                      "go");
    }
    writer->Finish();
}

}  // namespace

void AddTrace(CLI::App& program) {
    const auto options = std::make_shared<TraceOptions>();
    CLI::App* trace = program.add_subcommand(
        "trace", "Show all that the mail and the security log know about one mail");
    trace->footer(
        "A queue id or a message id leads to all rows of that mail, also those of its other queue\n"
        "ids, and to security events that name it or are of the same sender and recipient shortly\n"
        "before. An address leads to all rows with it as sender or recipient. A search for a "
        "queue\n"
        "id reads the whole logs, which --since shortens.");
    trace->add_option("WHAT", options->what, "A queue id, message id or address")->required();
    AddTimes(*trace, options->since, options->until);
    trace->add_option("--format", options->format, "table or json [table]")
        ->check(CLI::IsMember({"table", "json"}));
    trace->callback([options] { Trace(*options); });
}

}  // namespace serverlog::program
