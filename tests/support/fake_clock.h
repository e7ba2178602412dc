#pragma once

#include <string>

namespace test {

/// The clock of a test's process: libfaketime shows it the time that the test sets, and that time
/// stands still. Times of files and the monotonic clock stay real.
class FakeClock {
 public:
    /// Starts the process afresh with libfaketime in it, unless it is there already. To be called
    /// first of all in main(). Throws std::runtime_error where there is no libfaketime.
    static void Install(char** arguments);

    /// What has to be in LD_PRELOAD of a program to have libfaketime in it. Throws as Install.
    static std::string Preload();

    /// Sets the clock.
    ///
    /// @param time  seconds since the epoch
    static void Set(long time);
};

}  // namespace test
