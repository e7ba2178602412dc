#include "utils/merosdk/file_lock_guard.h"

#include <mailserver-log/exception/exception.h>
#include <mailserver/file_lock.h>

#include <utility>

namespace serverlog::utils {

FileLockGuard::FileLockGuard(std::string path) : path_(std::move(path)) {
    Lock();
}

FileLockGuard::~FileLockGuard() {
    try {
        Unlock();
    } catch (const Exception<ETag::SDK>&) {
        SERVERLOG_ERROR_LINE("Release lock fail when guard destruct: %s", path_.c_str());
    }
}

void FileLockGuard::Lock() {
    if (descriptor_ >= 0) {
        return;
    }
    if (path_.empty()) {
        throw make_exception<ETag::SDK>(SDKError::InvalidLockPath, "empty file path");
    }
    if (!pscFileLockByFile(path_.c_str(), 1, &descriptor_)) {
        throw make_exception<ETag::SDK>(SDKError::ExclusiveLockFail, path_);
    }
}

void FileLockGuard::Unlock() {
    if (descriptor_ < 0) {
        return;
    }
    if (!pscFileUnlockByFile(descriptor_)) {
        throw make_exception<ETag::SDK>(SDKError::ReleaseLockFail, path_);
    }
    descriptor_ = -1;
}

}  // namespace serverlog::utils
