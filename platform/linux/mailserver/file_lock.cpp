#include "mailserver/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "common/file_descriptor.h"
#include "mailserver/maillog.h"

namespace {

// Read access is enough for flock(2), so that a process that may not write the file locks it too.
platform::FileDescriptor OpenLockFile(const char* path) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    return platform::FileDescriptor(open(path, O_RDONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, 0644));
}

bool Lock(int descriptor, int operation) {
    while (flock(descriptor, operation) != 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool pscFileLockByFile(const char* path, BOOL flag, int* fd) {
    if (path == nullptr || fd == nullptr) {
        return false;
    }
    platform::FileDescriptor file = OpenLockFile(path);
    if (!file || !Lock(file.Get(), LOCK_EX | (flag != 0 ? 0 : LOCK_NB))) {
        maillog(LOG_WARNING, "lock %s: %s", path, std::strerror(errno));
        return false;
    }
    *fd = file.Release();
    return true;
}

bool pscFileUnlockByFile(int fd) {
    // A copy of the descriptor in a forked child would keep the lock if it were only closed here.
    const bool unlocked = flock(fd, LOCK_UN) == 0;
    return close(fd) == 0 && unlocked;
}
