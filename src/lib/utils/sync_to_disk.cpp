#include "utils/sync_to_disk.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace serverlog::utils {

boost::system::error_code SyncToDisk(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    // EINVAL: the file system has no such thing, and there is nothing to wait for.
    const bool synced = descriptor >= 0 && (fsync(descriptor) == 0 || errno == EINVAL);
    const boost::system::error_code error(synced ? 0 : errno, boost::system::system_category());
    if (descriptor >= 0) {
        close(descriptor);
    }
    return error;
}

}  // namespace serverlog::utils
