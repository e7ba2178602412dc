#include "log/rotation/work_file.h"

#include <mailserver-log/exception/exception.h>
#include <merodbquery/session.h>

#include <cerrno>

#include "db/checkpoint.h"
#include "db/side_files.h"
#include "utils/files.h"
#include "utils/sync_to_disk.h"

namespace serverlog::log::rotation {

namespace {

constexpr const char* kSideFiles[] = {db::kJournalSuffix, db::kWalSuffix, db::kSharedMemorySuffix};

bool RemoveIfThere(const std::string& path) {
    return utils::Unlink(path) || errno == ENOENT;
}

void SyncOrThrow(const std::string& path) {
    if (const auto error = utils::SyncToDisk(path)) {
        throw make_exception<ETag::Rotation>(RotationError::RotateDbFail,
                                             "sync " + path + " " + error.message());
    }
}

}  // namespace

void WorkFile::RemoveLeftOver() const {
    bool removed = RemoveIfThere(path_);
    for (const char* suffix : kSideFiles) {
        removed = RemoveIfThere(path_ + suffix) && removed;
    }
    if (!removed) {
        throw make_exception<ETag::Rotation>(RotationError::PrepareEnvFail, "unlink tmp file fail");
    }
}

void WorkFile::CopyFrom(const std::string& long_term) const {
    {
        // The copy takes the file alone. The session is closed before: to close a copied file drops
        // the locks that this process has on it (fcntl(2)).
        merodbquery::Session session = merodbquery::Session::SQLite(long_term);
        if (!db::Checkpoint(session, db::CheckpointMode::Full)) {
            throw make_exception<ETag::Rotation>(RotationError::RotateDbFail,
                                                 "write-ahead log in use: " + long_term);
        }
    }
    utils::CopyFile(long_term, path_, false);
}

void WorkFile::TakePlaceOf(const std::string& long_term) const {
    if (utils::Exist(path_ + db::kWalSuffix)) {
        throw make_exception<ETag::Rotation>(RotationError::RotateDbFail,
                                             "write-ahead log left: " + path_);
    }
    SyncOrThrow(path_);
    // The files beside the old one would be taken for those of the new one. Nothing is lost with
    // them: since CopyFrom all rows are in the file, and only rotation adds to it.
    for (const char* suffix : kSideFiles) {
        if (!RemoveIfThere(long_term + suffix)) {
            throw make_exception<ETag::Rotation>(RotationError::RotateDbFail,
                                                 "unlink fail: " + long_term + suffix);
        }
    }
    utils::Rename(path_, long_term);
    // The rows are removed from the current file next.
    SyncOrThrow(utils::FileParentFolder(long_term));
}

}  // namespace serverlog::log::rotation
