#include "utils/regular_file_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <vector>

namespace serverlog::utils {

namespace {

using boost::system::error_code;

constexpr std::size_t kBufferSize = std::size_t{1} << 18;
constexpr mode_t kModeBits = 07777;
constexpr char kPartSuffix[] = ".part";

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

    bool Is(const struct stat& other) const {
        return status_.st_dev == other.st_dev && status_.st_ino == other.st_ino;
    }

    bool IsSameAs(const OpenFile& other) const { return Is(other.status_); }

    mode_t Mode() const { return status_.st_mode & kModeBits; }

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

error_code Fill(const OpenFile& source, OpenFile& target) {
    if (ftruncate(target.descriptor(), 0) != 0) {
        return LastError();
    }
    if (const error_code error = CopyBytes(source, target)) {
        return error;
    }
    if (fchmod(target.descriptor(), source.Mode()) != 0) {
        return LastError();
    }
    return target.Close();
}

// Gives a whole file its name, at once.
error_code TakeName(const std::string& part, const std::string& to, bool overwrite) {
    if (overwrite) {
        return rename(part.c_str(), to.c_str()) == 0 ? error_code() : LastError();
    }
    if (renameat2(AT_FDCWD, part.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    // Not every file system can tell the two apart; there what came up meanwhile is lost.
    return errno == EINVAL ? TakeName(part, to, true) : LastError();
}

error_code CopyThroughPart(const OpenFile& source, const std::string& to, bool overwrite) {
    const std::string part = to + kPartSuffix;
    unlink(part.c_str());  // left by a process that was killed
    OpenFile target(part, O_WRONLY | O_CREAT | O_EXCL, source.Mode() | S_IWUSR);
    if (target.error()) {
        return target.error();
    }
    error_code error = Fill(source, target);
    if (!error) {
        error = TakeName(part, to, overwrite);
    }
    if (error) {
        unlink(part.c_str());
    }
    return error;
}

// A link, a device or a pipe stays what it is and takes the bytes.
error_code CopyInto(const OpenFile& source, const std::string& to) {
    OpenFile target(to, O_WRONLY, 0);
    if (target.error()) {
        return target.error();
    }
    return target.IsSameAs(source) ? Error(boost::system::errc::file_exists) : Fill(source, target);
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
    struct stat status = {};
    if (lstat(to.c_str(), &status) != 0) {
        return errno == ENOENT ? CopyThroughPart(source, to, overwrite) : LastError();
    }
    if (!overwrite || source.Is(status)) {
        return Error(boost::system::errc::file_exists);
    }
    return S_ISREG(status.st_mode) ? CopyThroughPart(source, to, overwrite) : CopyInto(source, to);
}

}  // namespace serverlog::utils
