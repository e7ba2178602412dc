#include "utils/regular_file_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace serverlog::utils {

namespace {

using boost::system::error_code;

constexpr std::size_t kBufferSize = std::size_t{1} << 18;
constexpr mode_t kModeBits = 07777;

error_code LastError() {
    return {errno, boost::system::system_category()};
}

error_code Error(boost::system::errc::errc_t reason) {
    return boost::system::errc::make_error_code(reason);
}

// An open file with its status. O_NONBLOCK: to open a pipe would wait for its other end.
class OpenFile {
 public:
    OpenFile(const std::string& path, int flags, mode_t mode)
        : descriptor_(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, mode)) {
        if (descriptor_ < 0 || fstat(descriptor_, &status_) != 0) {
            error_ = LastError();
        }
    }

    ~OpenFile() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool IsSameAs(const OpenFile& other) const {
        return status_.st_dev == other.status_.st_dev && status_.st_ino == other.status_.st_ino;
    }

    // Some file systems tell only now that they could not keep the bytes.
    error_code Close() {
        const int result = close(descriptor_);
        descriptor_ = -1;
        return result == 0 ? error_code() : LastError();
    }

    const error_code& error() const { return error_; }
    int descriptor() const { return descriptor_; }
    const struct stat& status() const { return status_; }

 private:
    int descriptor_;
    struct stat status_ = {};
    error_code error_;
};

error_code WriteAll(int descriptor, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(descriptor, bytes, size);
        if (written < 0) {
            return LastError();
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return {};
}

// By read(2) and write(2), as they alone work with every file system.
error_code CopyBytes(const OpenFile& source, const OpenFile& target) {
    std::vector<char> buffer(kBufferSize);
    for (;;) {
        const ssize_t size = read(source.descriptor(), buffer.data(), buffer.size());
        if (size <= 0) {
            return size == 0 ? error_code() : LastError();
        }
        const error_code error =
            WriteAll(target.descriptor(), buffer.data(), static_cast<std::size_t>(size));
        if (error) {
            return error;
        }
    }
}

}  // namespace

error_code CopyRegularFile(const std::string& from, const std::string& to, bool overwrite) {
    const OpenFile source(from, O_RDONLY, 0);
    if (source.error()) {
        return source.error();
    }
    if (!S_ISREG(source.status().st_mode)) {
        return Error(boost::system::errc::function_not_supported);
    }
    const mode_t mode = source.status().st_mode & kModeBits;
    // Not O_TRUNC: it would empty the source where both are the same file.
    OpenFile target(to, O_WRONLY | O_CREAT | (overwrite ? 0 : O_EXCL), mode | S_IWUSR);
    if (target.error()) {
        return target.error();
    }
    if (target.IsSameAs(source)) {
        return Error(boost::system::errc::file_exists);
    }
    if (ftruncate(target.descriptor(), 0) != 0) {
        return LastError();
    }
    if (const error_code error = CopyBytes(source, target)) {
        return error;
    }
    if (fchmod(target.descriptor(), mode) != 0) {
        return LastError();
    }
    return target.Close();
}

}  // namespace serverlog::utils
