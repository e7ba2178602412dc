#pragma once

#include <CLI/CLI.hpp>
#include <vector>

namespace serverlog::program {

/// The subcommands in the order in which they were added.
std::vector<const CLI::App*> Subcommands(const CLI::App& program);

/// The options of a command that may stand in a configuration file, in their order.
std::vector<const CLI::Option*> ConfigurableOptions(const CLI::App& command);

}  // namespace serverlog::program
