#include "db/checkpoint.h"

#include <soci/soci.h>

namespace serverlog::db {

namespace {

const char* Name(CheckpointMode mode) {
    switch (mode) {
        case CheckpointMode::Full:
            return "FULL";
        case CheckpointMode::Truncate:
            return "TRUNCATE";
        case CheckpointMode::Passive:
            break;
    }
    return "PASSIVE";
}

}  // namespace

bool Checkpoint(merodbquery::Session& session, CheckpointMode mode) {
    try {
        int busy = 0;
        int frames = 0;
        int frames_done = 0;
        session.GetRawSession() << std::string("PRAGMA main.wal_checkpoint(") + Name(mode) + ")",
            soci::into(busy), soci::into(frames), soci::into(frames_done);
        return busy == 0 && frames == frames_done;
    } catch (const soci::soci_error&) {
        return false;
    }
}

}  // namespace serverlog::db
