#include "collect/rejected_log.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <string_view>

#include "process/failure.h"
#include "process/unique_descriptor.h"

namespace serverlog::program {

namespace {

std::string Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    char text[64];
    return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S%z", &local));
}

void AppendEscaped(std::string_view message, std::string& text) {
    for (const char c : message) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7f) {
            text += c;
            continue;
        }
        text += '#';
        for (const int shift : {6, 3, 0}) {
            text += static_cast<char>('0' + ((byte >> shift) & 7));
        }
    }
}

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

// A new file is only there for good once its folder is on the disk, too.
bool SyncFolder(const std::string& path) {
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    const UniqueDescriptor descriptor(
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor && fsync(descriptor.Get()) == 0;
}

}  // namespace

void RejectedLog::Append(const std::vector<Rejection>& rejections) const {
    if (rejections.empty()) {
        return;
    }
    std::string text;
    for (const Rejection& rejection : rejections) {
        text += Now() + '\t' + rejection.reason + '\t';
        AppendEscaped(rejection.message, text);
        text += '\n';
    }
    const std::string failure = "cannot write " + path_;
    const UniqueDescriptor file(
        open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
    struct stat status = {};
    if (!file || flock(file.Get(), LOCK_EX) != 0 || fstat(file.Get(), &status) != 0) {
        throw Failure(DescribeErrno(failure));
    }
    if (!WriteAll(file.Get(), text) || fsync(file.Get()) != 0 ||
        (status.st_size == 0 && !SyncFolder(path_))) {
        const std::string reason = DescribeErrno(failure);
        // Half a line would hide the next one. If even this fails, the reason is the same.
        [[maybe_unused]] const int result = ftruncate(file.Get(), status.st_size);
        throw Failure(reason);
    }
}

}  // namespace serverlog::program
