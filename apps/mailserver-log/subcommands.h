#pragma once

#include <CLI/CLI.hpp>

namespace serverlog::program {

/// Each adds one subcommand, which runs when it is parsed. It throws CLI::ParseError for a wrong
/// command line, Failure if the work fails, ReaderGone if nobody reads its output any more, and
/// what the library throws.
void AddCall(CLI::App& program);
void AddCollect(CLI::App& program);
void AddLoad(CLI::App& program);
void AddList(CLI::App& program);
void AddExport(CLI::App& program);
void AddQuery(CLI::App& program);
void AddStatistics(CLI::App& program);
void AddStats(CLI::App& program);
void AddTrace(CLI::App& program);
void AddRotate(CLI::App& program);
void AddArchive(CLI::App& program);
void AddUpgrade(CLI::App& program);
void AddStatus(CLI::App& program);

}  // namespace serverlog::program
