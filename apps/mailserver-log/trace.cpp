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

void AddMails(FoundMails& mails, TraceStore<MailStore>& store, const Condition& condition) {
    RowCursor<MailStore> rows = store.Find(condition);
    while (store.Next(rows)) {
        mails.Add(rows.Row());
    }
}

FoundMails FindMails(const TraceTarget& target, const Condition& times,
                     TraceStore<MailStore>& store) {
    FoundMails mails;
    AddMails(mails, store, target.MailIds() && times);
    if (mails.ByMessageId().IsSet()) {  // the rows of their other queue ids
        AddMails(mails, store, mails.ByMessageId() && times);
    }
    return mails;
}

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
    const FoundMails found = FindMails(target, times, mail_store);
    Condition mails_wanted = target.MailAddresses() || found.ByMessageId();
    if (found.HasNameless()) {
        mails_wanted = mails_wanted || target.MailIds();
    }
    RowCursor<MailStore> mails = mail_store.FindByDate(mails_wanted && times);
    RowCursor<SecurityStore> events =
        security_store.FindByDate((target.SecurityAddresses() || found.SecurityRows()) && times);
    const auto is_wanted = [&](const record::SecurityLog& event) {
        return target.IsAddress(event.sender) || target.IsAddress(event.recipient) ||
               found.Concerns(event);
    };
    const auto writer = MakeTraceWriter(options.format, std::cout, TerminalStyle());
    if (!WriteByDate(mails, events, is_wanted, *writer)) {
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
        "A queue id or a message id leads to all rows of that mail, also to those of other queue\n"
        "ids, and to rejections of the same sender and recipient shortly before. An address leads\n"
        "to all rows with it as sender or recipient. A search for a queue id reads the whole mail\n"
        "log, which --since shortens.");
    trace->add_option("WHAT", options->what, "A queue id, message id or address")->required();
    AddTimes(*trace, options->since, options->until);
    trace->add_option("--format", options->format, "table or json [table]")
        ->check(CLI::IsMember({"table", "json"}));
    trace->callback([options] { Trace(*options); });
}

}  // namespace serverlog::program
