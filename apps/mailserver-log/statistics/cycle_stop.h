#pragma once

namespace serverlog::program {

/// Turns SIGTERM and SIGINT into a request to stop work that goes in cycles, each with a sleep(3)
/// at its end. A stop lets the work in hand finish, ends the sleep and all that begin later.
///
/// System calls other than sleeps go on undisturbed. One object at a time in a process; the former
/// actions come back when it ends.
class CycleStop {
 public:
    CycleStop();
    ~CycleStop();
    CycleStop(const CycleStop&) = delete;
    CycleStop& operator=(const CycleStop&) = delete;

    /// Whether one of the signals has come.
    bool Requested() const;
};

}  // namespace serverlog::program
