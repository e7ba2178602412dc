#pragma once

#include <ostream>
#include <string>

#include "output/descriptor_buffer.h"
#include "process/stop_signal.h"
#include "process/unique_descriptor.h"

namespace serverlog::program {

/// Where a command writes its result: standard output, or a file that appears whole at the end and
/// not at all when something fails.
class OutputTarget {
 public:
    /// @param path  the file to make or replace; empty or "-" for standard output
    /// @param stop  ends the writing; must outlive this object
    ///
    /// Throws Failure if `path` is there and no file, or nothing can be written beside it.
    OutputTarget(const std::string& path, const StopSignal& stop);

    /// Removes what was written to a file, unless Commit was called.
    ~OutputTarget();
    OutputTarget(const OutputTarget&) = delete;
    OutputTarget& operator=(const OutputTarget&) = delete;

    /// Where to write. It is no longer good once something could not be written.
    std::ostream& Stream() { return stream_; }

    /// Throws if something could not be written: ReaderGone if nobody reads standard output any
    /// more, else Failure.
    void Check() const;

    /// Ends the writing and gives the file its name. Throws as Check does.
    void Commit();

    bool IsFile() const { return !path_.empty(); }

 private:
    [[noreturn]] void Fail(int error) const;

    std::string path_;            // empty for standard output
    std::string temporary_path_;  // empty when there is none (any more)
    UniqueDescriptor file_;
    DescriptorBuffer buffer_;
    std::ostream stream_;
};

}  // namespace serverlog::program
