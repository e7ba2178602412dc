#pragma once

#include <string>

namespace serverlog::utils {

/// Holds an exclusive lock on a lock file, against other processes and other threads alike.
///
/// A guard is used by one thread.
class FileLockGuard {
 public:
    /// Takes the lock; see Lock().
    explicit FileLockGuard(std::string path);

    /// Releases the lock. A failure is written to the log and goes no further.
    ~FileLockGuard();

    FileLockGuard(const FileLockGuard&) = delete;
    FileLockGuard& operator=(const FileLockGuard&) = delete;

    /// Takes the lock; does nothing when it is held already.
    ///
    /// @throws Exception<ETag::SDK> with InvalidLockPath for an empty path, with ExclusiveLockFail
    ///         when the platform does not give the lock
    void Lock();

    /// Releases the lock; does nothing when it is not held.
    ///
    /// @throws Exception<ETag::SDK> with ReleaseLockFail; the lock then counts as held
    void Unlock();

 private:
    int descriptor_ = -1;  ///< -1 when the lock is not held
    std::string path_;
};

}  // namespace serverlog::utils
