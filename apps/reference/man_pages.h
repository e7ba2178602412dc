#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "command.h"

namespace serverlog::reference {

/// The section of the manual that a subcommand's page stands in: 8 for those that are run by the
/// system or by who looks after it, 1 for the others.
int SectionOf(const Command& command);

/// Writes the page of the program, in the form of man(7).
///
/// @param release  what --version tells
void WriteProgramPage(std::ostream& out, const std::string& release, const Command& program,
                      const std::vector<Command>& subcommands);

/// Writes the page of a subcommand.
void WriteSubcommandPage(std::ostream& out, const std::string& release, const Command& subcommand);

/// Writes the page of the configuration files.
void WriteConfigurationPage(std::ostream& out, const std::string& release,
                            const std::vector<Command>& subcommands);

}  // namespace serverlog::reference
