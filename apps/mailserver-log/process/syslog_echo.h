#pragma once

#include <ostream>
#include <string>

#include "process/unique_descriptor.h"

namespace serverlog::program {

/// Catches what the process writes to the system log while this object lives; the system log gets
/// it all the same. The C library can copy its log lines to standard error only (LOG_PERROR), so
/// that is caught for the time.
///
/// One object at a time, in a process with one thread.
class SyslogEcho {
 public:
    /// @param identifier  the program's name in the system log, as given to openlog(3); must live
    /// as
    ///                    long as the process
    ///
    /// Throws Failure if standard error can't be replaced.
    explicit SyslogEcho(const char* identifier);

    /// Gives standard error back, with what was caught and not taken.
    ~SyslogEcho();
    SyslogEcho(const SyslogEcho&) = delete;
    SyslogEcho& operator=(const SyslogEcho&) = delete;

    /// Gives standard error back and writes the admin log lines among what was caught to `lines`,
    /// each with a line feed behind it, and the rest to `rest`.
    void Finish(std::ostream& lines, std::ostream& rest);

 private:
    std::string Restore();

    const char* identifier_;
    UniqueDescriptor caught_;
    UniqueDescriptor former_;
};

}  // namespace serverlog::program
