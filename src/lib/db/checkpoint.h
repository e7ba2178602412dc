#pragma once

#include <merodbquery/session.h>

namespace serverlog::db {

/// How far a checkpoint goes (https://sqlite.org/pragma.html#pragma_wal_checkpoint).
enum class CheckpointMode {
    Passive,  ///< what can be done without waiting
    Full,     ///< waits up to 60 s for readers of an older picture; writers wait meanwhile
};

/// Brings the rows of the write-ahead log of the session's main file into the file itself. A file
/// without such a log is fine.
///
/// @return true when all rows are in the file; false when some are not, or it can't be told
bool Checkpoint(merodbquery::Session& session, CheckpointMode mode);

}  // namespace serverlog::db
