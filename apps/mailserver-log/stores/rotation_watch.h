#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace serverlog::program {

/// Shows on standard error that a rotation goes on, for as long as this object lives: how far the
/// work file has grown, and for how long. Shows nothing unless that is a terminal.
class RotationWatch {
 public:
    /// @param name       the store's
    /// @param work_path  the file that grows; may be missing
    RotationWatch(std::string name, std::string work_path);

    /// Removes what is shown.
    ~RotationWatch();
    RotationWatch(const RotationWatch&) = delete;
    RotationWatch& operator=(const RotationWatch&) = delete;

 private:
    void Watch();

    const std::string name_;
    const std::string work_path_;
    std::mutex mutex_;
    std::condition_variable over_changed_;
    bool over_ = false;
    std::thread thread_;  // the library has none that could tell
};

}  // namespace serverlog::program
