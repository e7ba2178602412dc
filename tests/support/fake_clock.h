#pragma once

namespace test {

/// The clock of the test's process. Once a test has set it, it stands still for whatever asks with
/// time(2) or gettimeofday(2), SQLite among them, and usleep(3) returns at once: so a wait for a
/// busy file runs out without taking time. Times of files and the clocks of std::chrono stay real,
/// as does the clock of programs that the test starts.
class FakeClock {
 public:
    /// Sets the clock.
    ///
    /// @param time  seconds since the epoch, from 0
    static void Set(long time);
};

}  // namespace test
