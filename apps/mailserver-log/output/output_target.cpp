#include "output/output_target.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "output/standard_output.h"
#include "process/failure.h"

namespace serverlog::program {

namespace {

constexpr mode_t kPermissions = 0777;

mode_t NewFileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<mode_t>(0666 & ~mask);
}

// The path of the file itself, so that a link to it stays a link. Other things than files, such as
// /dev/null, would be gone with the renaming.
std::string FilePath(const std::string& path) {
    if (path.empty() || path == "-") {
        return {};
    }
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        return path;
    }
    if (!S_ISREG(status.st_mode)) {
        throw Failure(path + " is there and no file; give another name, or leave --output out");
    }
    return std::filesystem::canonical(path).string();
}

// An empty file beside `path` with the mode that `path` has or would get; `name` gets its path.
UniqueDescriptor MakeBeside(const std::string& path, std::string& name) {
    if (path.empty()) {
        return UniqueDescriptor();
    }
    struct stat status = {};
    const mode_t mode =
        stat(path.c_str(), &status) == 0 ? status.st_mode & kPermissions : NewFileMode();
    name = path + ".XXXXXX";
    UniqueDescriptor file(mkostemp(name.data(), O_CLOEXEC));
    if (!file || fchmod(file.Get(), mode) != 0) {
        throw Failure(DescribeErrno("cannot write a file beside " + path) +
                      "; check the folder and who may write there");
    }
    return file;
}

}  // namespace

OutputTarget::OutputTarget(const std::string& path, const StopSignal& stop)
    : path_(FilePath(path)),
      file_(MakeBeside(path_, temporary_path_)),
      buffer_(file_ ? file_.Get() : STDOUT_FILENO, stop),
      stream_(&buffer_) {}

OutputTarget::~OutputTarget() {
    if (!temporary_path_.empty()) {
        unlink(temporary_path_.c_str());
    }
}

void OutputTarget::Check() const {
    if (buffer_.error() != 0) {
        Fail(buffer_.error());
    }
}

void OutputTarget::Commit() {
    stream_.flush();
    Check();
    if (!IsFile()) {
        return;
    }
    if (fsync(file_.Get()) != 0 || rename(temporary_path_.c_str(), path_.c_str()) != 0) {
        Fail(errno);
    }
    temporary_path_.clear();
}

void OutputTarget::Fail(int error) const {
    if (error == EPIPE && !IsFile()) {
        throw ReaderGone();
    }
    if (error == ECANCELED) {
        throw Failure(IsFile() ? "stopped; " + path_ + " is as it was"
                               : "stopped; the end is missing");
    }
    throw Failure("cannot write " + (IsFile() ? path_ : "to standard output") + ": " +
                  std::generic_category().message(error) +
                  (IsFile() ? "; it is as it was, mend that and try again"
                            : "; the end is missing, mend that and try again"));
}

}  // namespace serverlog::program
