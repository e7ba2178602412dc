#pragma once

#include <chrono>
#include <functional>
#include <ostream>
#include <string>

#include "process/stop_signal.h"

namespace serverlog::program {

/// Tries what fails again and again, with waits that grow to some seconds, and says so once for
/// each time of trouble.
class Retry {
 public:
    /// How long it still tries once a stop is requested.
    static constexpr std::chrono::seconds kGrace{5};

    /// Both must outlive this object.
    Retry(const StopSignal& stop, std::ostream& talk) : stop_(stop), talk_(talk) {}

    /// Calls `attempt` until it does not throw.
    ///
    /// @param task     what is tried, as a person should read it behind "cannot "
    /// @param attempt  may be called again after any exception
    /// @return false if it gave up, since a stop was requested
    bool Run(const std::string& task, const std::function<void()>& attempt);

 private:
    const StopSignal& stop_;
    std::ostream& talk_;
};

}  // namespace serverlog::program
