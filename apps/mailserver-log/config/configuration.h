#pragma once

#include <CLI/CLI.hpp>

namespace serverlog::program {

/// The file of the administrator's own options, and the folder of files (`*.conf`) that are read
/// after it, by their names; what is read last counts.
inline constexpr char kConfigFile[] = "/etc/mailserver-log/mailserver-log.conf";
inline constexpr char kConfigFolder[] = "/etc/mailserver-log/mailserver-log.conf.d";

/// Adds --config and --dump-config, and lets the options of all subcommands stand in configuration
/// files. Call it once all subcommands are there.
void AddConfiguration(CLI::App& program);

}  // namespace serverlog::program
