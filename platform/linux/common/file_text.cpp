#include "common/file_text.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "common/file_descriptor.h"

namespace platform {

ReadOutcome ReadText(const std::string& path, std::string& text) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) {
        return errno == ENOENT || errno == ENOTDIR ? ReadOutcome::Missing : ReadOutcome::Failed;
    }
    text.clear();
    std::array<char, 1 << 16> buffer;
    for (;;) {
        const ssize_t size = read(file.Get(), buffer.data(), buffer.size());
        if (size == 0) {
            return ReadOutcome::Read;
        }
        if (size > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(size));
        } else if (errno != EINTR) {
            return ReadOutcome::Failed;
        }
    }
}

bool WriteText(int descriptor, const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t size = write(descriptor, text.data() + written, text.size() - written);
        if (size >= 0) {
            written += static_cast<std::size_t>(size);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace platform
