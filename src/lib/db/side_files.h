#pragma once

namespace serverlog::db {

/// What SQLite adds to a database's path for the files beside it
/// (https://sqlite.org/tempfiles.html).
inline constexpr char kJournalSuffix[] = "-journal";
inline constexpr char kWalSuffix[] = "-wal";
inline constexpr char kSharedMemorySuffix[] = "-shm";

}  // namespace serverlog::db
