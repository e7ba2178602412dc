#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "common/file_descriptor.h"

namespace platform {

/// Runs an executable as a process group of its own, hands it a text on standard input and takes
/// what it writes to standard output. An object lives for one run and is used by one thread.
class HandlerProcess {
 public:
    enum class Outcome {
        Done,      ///< it ended with status 0
        Failed,    ///< it could not be started, ended otherwise, or wrote too much
        TimedOut,  ///< it took too long
    };

    HandlerProcess() = default;
    HandlerProcess(const HandlerProcess&) = delete;
    HandlerProcess& operator=(const HandlerProcess&) = delete;

    /// Starts the executable and waits for its end. One that takes too long or writes too much is
    /// killed with its whole process group.
    ///
    /// @param arguments   path of the executable, then its arguments
    /// @param input       text for its standard input
    /// @param limit       longest time it may take
    /// @param size_limit  longest output, in bytes
    Outcome Run(const std::vector<std::string>& arguments, const std::string& input,
                std::chrono::seconds limit, std::size_t size_limit);

    /// What it wrote to standard output.
    const std::string& Output() const { return output_; }

    /// What went wrong, for a person; empty for Done.
    const std::string& Reason() const { return reason_; }

 private:
    bool Start(const std::vector<std::string>& arguments, const std::string& input);
    Outcome Collect(std::chrono::steady_clock::time_point deadline, std::size_t size_limit);
    bool ReadOutput(std::size_t size_limit);
    Outcome Finish();
    void Kill();

    pid_t process_ = -1;
    FileDescriptor process_end_;  // pidfd: readable once the process has ended
    FileDescriptor output_end_;   // closed at the end of the output
    std::string output_;
    std::string reason_;
};

}  // namespace platform
