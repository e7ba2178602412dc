#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "listing/selection.h"
#include "output/display_text.h"
#include "output/standard_output.h"
#include "output/terminal_style.h"
#include "process/failure.h"
#include "subcommands.h"
#include "trace/found_mails.h"
#include "trace/trace_target.h"
#include "trace/trace_writer.h"
#include "trace/tracer.h"

namespace serverlog::program {

namespace {

struct TraceOptions {
    std::string what;
    std::string since;
    std::string until;
    std::string format = "table";
};

TraceTarget Target(const std::string& text) {
    try {
        return TraceTarget(text);
    } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError("WHAT", error.what());
    }
}

Tracer MakeTracer(const TraceOptions& options) {
    const TraceTarget target = Target(options.what);
    const merodbquery::Condition times = TimeCondition(options.since, options.until);
    try {
        return Tracer(target, times);
    } catch (const TooManyMails& error) {
        throw Failure(std::string(error.what()) + "; narrow it down with --since and --until");
    }
}

void Trace(const TraceOptions& options) {
    IgnoreBrokenPipe();
    Tracer tracer = MakeTracer(options);
    const auto writer = MakeTraceWriter(options.format, std::cout, TerminalStyle());
    const bool is_found = tracer.ForEach([&writer](const auto& row) {
        writer->Write(row);
        return std::cout.good();
    });
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
