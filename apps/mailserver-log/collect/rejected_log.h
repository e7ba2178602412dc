#pragma once

#include <string>
#include <utility>
#include <vector>

namespace serverlog::program {

/// One message that was not stored, and why.
struct Rejection {
    std::string message;
    std::string reason;
};

/// The file that keeps the messages that could not be stored, so that none is lost. One line each:
/// the time, the reason and the message, with tabs between; control characters in the message stand
/// as "#ooo", as rsyslog escapes them. So `cut -f 3- rejected.log` gives lines that can be
/// collected once what was wrong with them is mended.
class RejectedLog {
 public:
    /// @param path  made with its first line, readable by its owner only: messages can hold secrets
    explicit RejectedLog(std::string path) : path_(std::move(path)) {}

    const std::string& Path() const { return path_; }

    /// Appends all and waits until they lie on the disk. Several processes may do so at once.
    ///
    /// Throws Failure, and the file is as it was, if they can't be written whole.
    void Append(const std::vector<Rejection>& rejections) const;

 private:
    std::string path_;
};

}  // namespace serverlog::program
