#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace serverlog::program {

/// Calls a function every few seconds while some work goes on, from a thread of its own, since the
/// work may be stuck in a wait for a lock.
class KeepAlive {
 public:
    /// @param sign  called while the work goes on, never between End and the next Begin; must not
    ///              throw
    explicit KeepAlive(std::function<void()> sign);
    ~KeepAlive();
    KeepAlive(const KeepAlive&) = delete;
    KeepAlive& operator=(const KeepAlive&) = delete;

    /// The work begins; no matter if it went on already.
    void Begin();

    /// The work has ended.
    void End();

 private:
    void Run();

    std::function<void()> sign_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool working_ = false;
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace serverlog::program
