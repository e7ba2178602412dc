#include "support/fake_clock.h"

#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <atomic>

namespace {

constexpr long kRealClock = -1;

std::atomic<long> fake_time{kRealClock};

timespec Now() {
    timespec now = {fake_time, 0};
    if (now.tv_sec == kRealClock) {
        clock_gettime(CLOCK_REALTIME, &now);
    }
    return now;
}

}  // namespace

void test::FakeClock::Set(long time) {
    fake_time = time;
}

// An executable's functions come before those of all its libraries, also for the libraries
// themselves. libfaketime would do without this, but the sanitizers' libraries do not get along
// with it.

[[gnu::visibility("default")]] time_t time(time_t* result) noexcept {
    const time_t now = Now().tv_sec;
    if (result != nullptr) {
        *result = now;
    }
    return now;
}

[[gnu::visibility("default")]] int gettimeofday(timeval* result, void* /*zone*/) noexcept {
    const timespec now = Now();
    *result = {now.tv_sec, now.tv_nsec / 1000};
    return 0;
}

[[gnu::visibility("default")]] int usleep(useconds_t microseconds) {
    if (fake_time != kRealClock) {
        return 0;
    }
    const timespec time = {microseconds / 1000000, microseconds % 1000000 * 1000L};
    return nanosleep(&time, nullptr);
}
