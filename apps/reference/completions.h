#pragma once

#include <ostream>
#include <vector>

#include "command.h"

namespace serverlog::reference {

/// Each writes what a shell reads to complete the program's command line.
void WriteBashCompletion(std::ostream& out, const Command& program,
                         const std::vector<Command>& subcommands);
void WriteZshCompletion(std::ostream& out, const Command& program,
                        const std::vector<Command>& subcommands);
void WriteFishCompletion(std::ostream& out, const Command& program,
                         const std::vector<Command>& subcommands);

}  // namespace serverlog::reference
