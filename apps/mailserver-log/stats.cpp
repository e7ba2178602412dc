#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "output/standard_output.h"
#include "output/terminal_style.h"
#include "statistics/statistic_rows.h"
#include "statistics/statistic_view.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

struct StatsOptions {
    std::string subject = "traffic";
    std::string scale = "day";
    std::string format = "table";
};

std::vector<StatisticRow> ReadRows(const StatsOptions& options) {
    if (options.subject == "traffic") {
        return ReadTraffic(options.scale);
    }
    const std::vector<std::string>& scales = ThreatScales();
    if (std::find(scales.begin(), scales.end(), options.scale) == scales.end()) {
        throw CLI::ValidationError("--scale", "threats are counted by hour and by day only");
    }
    return ReadThreats(options.scale);
}

void PrintStats(const StatsOptions& options) {
    IgnoreBrokenPipe();
    const std::vector<StatisticRow> rows = ReadRows(options);
    if (options.format == "json") {
        WriteStatisticJson(std::cout, rows);
    } else if (options.format == "csv") {
        WriteStatisticCsv(std::cout, rows);
    } else {
        WriteStatisticTables(std::cout, rows, options.scale, TerminalStyle());
    }
}

}  // namespace

void AddStats(CLI::App& program) {
    const auto options = std::make_shared<StatsOptions>();
    CLI::App* stats = program.add_subcommand("stats", "Show what the statistics have counted");
    stats->footer(
        "A table shows the top lists, addresses and places of the newest period only; the other\n"
        "formats have those of all periods.");
    stats->add_option("SUBJECT", options->subject, "traffic or threats [traffic]")
        ->check(CLI::IsMember({"traffic", "threats"}));
    stats->add_option("--scale", options->scale, "hour, day, week or month [day]")
        ->check(CLI::IsMember(TrafficScales()));
    stats->add_option("--format", options->format, "table, json or csv [table]")
        ->check(CLI::IsMember({"table", "json", "csv"}));
    stats->callback([options] { PrintStats(*options); });
}

}  // namespace serverlog::program
