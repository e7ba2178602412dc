#include "mailserver/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "common/file_descriptor.h"
#include "common/folders.h"
#include "common/last_error.h"
#include "mailserver/maillog.h"

namespace {

using platform::FileDescriptor;

// Read access is enough for flock(2), so that a process that may not write the file locks it too.
FileDescriptor OpenLockFile(const char* path) {
    constexpr int kFlags = O_RDONLY | O_CREAT | O_CLOEXEC;
    platform::MakeParentFolders(path);
    FileDescriptor made(open(path, kFlags | O_EXCL, 0644));
    if (made) {
        // A narrow umask must not keep the processes of other users from the lock.
        fchmod(made.Get(), 0644);
        return made;
    }
    return errno == EEXIST ? FileDescriptor(open(path, kFlags, 0644)) : FileDescriptor();
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
        PLATFORM_SET_LAST_ERROR(EINVAL);
        return false;
    }
    FileDescriptor file = OpenLockFile(path);
    if (!file || !Lock(file.Get(), LOCK_EX | (flag != 0 ? 0 : LOCK_NB))) {
        PLATFORM_SET_LAST_ERROR(errno);
        if (errno != EWOULDBLOCK) {  // held elsewhere is an answer, not a fault
            maillog(LOG_WARNING, "lock %s: %s", path, std::strerror(errno));
        }
        return false;
    }
    *fd = file.Release();
    return true;
}

bool pscFileUnlockByFile(int fd) {
    // A copy of the descriptor in a forked child would keep the lock if it were only closed here.
    const bool unlocked = flock(fd, LOCK_UN) == 0;
    if (close(fd) != 0 || !unlocked) {
        PLATFORM_SET_LAST_ERROR(errno);
        return false;
    }
    return true;
}
