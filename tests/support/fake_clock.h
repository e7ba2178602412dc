#pragma once

namespace test {

/// The clock of a test's process: libfaketime shows it the time that the test sets, and that time
/// stands still. Times of files and the monotonic clock stay real.
class FakeClock {
 public:
    /// Starts the process afresh with libfaketime in it, unless it is there already. To be called
    /// first of all in main(). Throws std::runtime_error where there is no libfaketime.
    static void Install(char** arguments);

    /// Sets the clock.
    ///
    /// @param time  seconds since the epoch
    static void Set(long time);
};

}  // namespace test
