#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace serverlog::reference {

/// An option, or an argument without a dash, as --help tells of it.
struct Argument {
    std::vector<std::string> names;  ///< with their dashes; of an argument without one its name
    std::string value;               ///< the name of its value; empty for a flag
    std::vector<std::string>
        choices;  ///< all values that it can have; empty if these are not known
    std::string description;
    bool takes_file = false;
    bool is_required = false;
    bool is_repeated = false;
    bool is_configurable = false;  ///< may stand in a configuration file
};

/// A subcommand, or the program itself.
struct Command {
    std::string name;
    std::string description;
    std::string footer;
    std::vector<Argument> positionals;
    std::vector<Argument> options;
};

/// Reads a command line's definition.
Command ReadCommand(const CLI::App& app);

}  // namespace serverlog::reference
