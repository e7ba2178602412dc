#pragma once

#include <chrono>

namespace serverlog::program {

/// Turns SIGTERM and SIGINT into a request to stop, which a loop can ask for and wait on.
///
/// One object at a time in a process; the former actions come back when it ends.
class StopSignal {
 public:
    /// Throws std::system_error if there is no descriptor left.
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// Whether one of the signals has come.
    bool Requested() const;

    enum class Wake { kReadable, kStop, kTimeout };

    /// Waits without an end.
    static constexpr std::chrono::milliseconds kForever{-1};

    /// Waits until `descriptor` can be read or is at its end, a stop is requested, or `limit` is
    /// over. A stop outweighs the rest.
    ///
    /// @param descriptor  -1 for none
    Wake Wait(int descriptor, std::chrono::milliseconds limit) const;
};

}  // namespace serverlog::program
