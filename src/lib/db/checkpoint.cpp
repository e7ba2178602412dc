#include "db/checkpoint.h"

#include <soci/soci.h>

namespace serverlog::db {

bool Checkpoint(merodbquery::Session& session, CheckpointMode mode) {
    try {
        int busy = 0;
        int frames = 0;
        int frames_done = 0;
        session.GetRawSession() << std::string("PRAGMA main.wal_checkpoint(") +
                                       (mode == CheckpointMode::Full ? "FULL" : "PASSIVE") + ")",
            soci::into(busy), soci::into(frames), soci::into(frames_done);
        return busy == 0 && frames == frames_done;
    } catch (const soci::soci_error&) {
        return false;
    }
}

}  // namespace serverlog::db
