#include "schedule/archive_stamp.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "process/failure.h"
#include "process/unique_descriptor.h"

namespace serverlog::program::archive_stamp {

std::optional<std::time_t> Read() {
    struct stat status = {};
    if (stat(kPath.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return status.st_mtime;
}

void Write(std::time_t time) {
    const UniqueDescriptor file(open(kPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    const timespec times[] = {{time, 0}, {time, 0}};
    if (file.Get() < 0 || futimens(file.Get(), times) != 0) {
        throw Failure(DescribeErrno("cannot keep the time of the archive in " + kPath) +
                      "; run this as root, and see that its folder is there");
    }
}

}  // namespace serverlog::program::archive_stamp
