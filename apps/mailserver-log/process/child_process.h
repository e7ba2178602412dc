#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "process/unique_descriptor.h"

namespace serverlog::program {

/// A program that was started to read its standard output.
class ChildProcess {
 public:
    /// @param command  the program, looked up in PATH, and its arguments
    ///
    /// Its standard input is empty, its standard error is the caller's. Throws Failure if it can't
    /// be started.
    explicit ChildProcess(const std::vector<std::string>& command);

    /// Ends it with SIGTERM if it still runs, and waits for its end.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// The reading end of its standard output; valid as long as this object.
    int Output() const { return output_.Get(); }

    /// Waits for its end. To be called once at most.
    /// @return its exit status, or 128 and the number of the signal that ended it
    int Wait();

 private:
    pid_t pid_ = -1;
    UniqueDescriptor output_;
};

}  // namespace serverlog::program
