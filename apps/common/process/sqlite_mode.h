#pragma once

namespace serverlog::program {

/// Lets SQLite go without what our programs have no use for: locks around each call, since one
/// connection is used by one thread, and statistics on memory. bench/README.md tells what it
/// brings.
///
/// To be called before SQLite is used for the first time; has no effect later.
void PrepareSqlite();

}  // namespace serverlog::program
