#include "process/retry.h"

#include <algorithm>
#include <thread>

#include "process/failure.h"

namespace serverlog::program {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kFirstDelay{50};
constexpr milliseconds kLongestDelay{5000};
// While a stop is pending the signal can't end a wait any more.
constexpr milliseconds kDelayWhenStopping{100};

}  // namespace

bool Retry::Run(const std::string& task, const std::function<void()>& attempt) {
    bool failed = false;
    milliseconds delay = kFirstDelay;
    Clock::time_point stop_time = Clock::time_point::max();
    for (;;) {
        try {
            attempt();
            if (failed) {
                talk_ << "mailserver-log: can " << task << " again" << std::endl;
            }
            return true;
        } catch (...) {
            if (!failed) {
                talk_ << "mailserver-log: cannot " << task << ": " << DescribeException()
                      << "; trying again until it works, no line is lost" << std::endl;
            }
            failed = true;
        }
        if (stop_.Requested()) {
            stop_time = std::min(stop_time, Clock::now());
            if (Clock::now() - stop_time >= kGrace) {
                return false;
            }
            std::this_thread::sleep_for(kDelayWhenStopping);
            continue;
        }
        stop_.Wait(-1, delay);
        delay = std::min(delay * 2, kLongestDelay);
    }
}

}  // namespace serverlog::program
