#pragma once

#include "output/table_writer.h"

namespace serverlog::program {

/// How a table is written to standard output: as wide as the terminal and, unless NO_COLOR is set
/// (https://no-color.org), with colours; with neither when it is no terminal.
TableWriter::Style TerminalStyle();

}  // namespace serverlog::program
