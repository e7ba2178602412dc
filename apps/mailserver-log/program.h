#pragma once

#include <CLI/CLI.hpp>
#include <memory>

namespace serverlog::program {

/// The program's command line with all its subcommands, ready to be parsed; see subcommands.h for
/// what parsing does. It reads the configuration files too.
std::unique_ptr<CLI::App> MakeProgram();

}  // namespace serverlog::program
