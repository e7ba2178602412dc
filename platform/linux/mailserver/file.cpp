#include "mailserver/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "common/file_descriptor.h"
#include "common/name_service.h"
#include "mailserver/maillog.h"

namespace {

bool SetOwnerAndMode(const std::string& path, uid_t uid, gid_t gid, mode_t mode) {
    // The file is opened by name once; owner and mode then go to that very file, even if somebody
    // puts another in its place meanwhile.
    const platform::FileDescriptor file(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!file || fstat(file.Get(), &status) != 0) {
        return false;
    }
    if (S_ISLNK(status.st_mode)) {
        errno = ELOOP;
        return false;
    }
    if (fchownat(file.Get(), "", uid, gid, AT_EMPTY_PATH) != 0) {
        return false;
    }
    // fchmod(2) takes no descriptor of this kind, its name under /proc does.
    return chmod(("/proc/self/fd/" + std::to_string(file.Get())).c_str(), mode) == 0;
}

}  // namespace

int mailFileOwnerModeSet(const std::string& path, const std::string& user, unsigned int mode) {
    uid_t uid = 0;
    gid_t gid = 0;
    const bool found = platform::LookUp(getpwnam_r, user.c_str(), [&](const passwd& record) {
        uid = record.pw_uid;
        gid = record.pw_gid;
    });
    if (!found) {
        maillog(LOG_WARNING, "there is no user %s to own %s", user.c_str(), path.c_str());
        return -1;
    }
    if (!SetOwnerAndMode(path, uid, gid, mode)) {
        maillog(LOG_WARNING, "hand %s to %s: %s", path.c_str(), user.c_str(), std::strerror(errno));
        return -1;
    }
    return 0;
}

bool pcsDirectoryExist(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

long pcsGetFileMtime(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? status.st_mtime : 0;
}
