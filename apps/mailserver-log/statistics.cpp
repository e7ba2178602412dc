#include <mailserver-log/old_log/maillogger.h>

#include <limits>
#include <memory>

#include "process/failure.h"
#include "statistics/cycle_stop.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

constexpr int kEndless = 0;
constexpr int kMost = std::numeric_limits<int>::max();

struct StatisticsOptions {
    int period = 300;
    int cycles = kEndless;
};

void RunStatistics(const StatisticsOptions& options) {
    const CycleStop stop;
    MailLogger logger(options.period);
    if (logger.error() != 0) {
        throw Failure(
            "cannot hand the folder of the stores to the user PostCube-Server; check that both "
            "exist, and run this as root");
    }
    for (int i = 0; !stop.Requested() && (options.cycles == kEndless || i < options.cycles); ++i) {
        logger.run();
    }
}

}  // namespace

void AddStatistics(CLI::App& program) {
    const auto options = std::make_shared<StatisticsOptions>();
    CLI::App* statistics = program.add_subcommand(
        "statistics", "Count traffic and threats from the logs, cycle after cycle");
    statistics->footer(
        "A cycle begins at each whole multiple of the period. What fails in one is told in the\n"
        "mail log and tried again in the next. SIGTERM ends this after the cycle in hand.");
    statistics->add_option("--period", options->period, "Seconds from cycle to cycle [300]")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, kMost));
    statistics->add_option("--cycles", options->cycles, "End after so many cycles")
        ->type_name("N")
        ->check(CLI::Range(1, kMost));
    statistics->callback([options] { RunStatistics(*options); });
}

}  // namespace serverlog::program
