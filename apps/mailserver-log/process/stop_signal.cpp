#include "process/stop_signal.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>

namespace serverlog::program {

namespace {

constexpr std::array<int, 2> kSignals = {SIGTERM, SIGINT};

// What the signal handler needs can only be global.
std::atomic<bool> stop_requested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");
int stop_pipe[2] = {-1, -1};
struct sigaction former_actions[kSignals.size()];

void RequestStop(int /*signal*/) {
    const int former_errno = errno;
    stop_requested = true;
    // A full pipe is as good: the reading end is readable.
    [[maybe_unused]] const ssize_t written = write(stop_pipe[1], "", 1);
    errno = former_errno;
}

}  // namespace

StopSignal::StopSignal() {
    stop_requested = false;
    if (pipe2(stop_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe for signals");
    }
    struct sigaction action = {};
    action.sa_handler = RequestStop;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &action, &former_actions[i]);
    }
}

StopSignal::~StopSignal() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &former_actions[i], nullptr);
    }
    close(stop_pipe[0]);
    close(stop_pipe[1]);
}

bool StopSignal::Requested() const {
    return stop_requested;
}

StopSignal::Wake StopSignal::Wait(int descriptor, std::chrono::milliseconds limit) const {
    pollfd entries[2] = {{stop_pipe[0], POLLIN, 0}, {descriptor, POLLIN, 0}};
    // A signal that breaks the poll is one of ours, or one that the caller may as well take for a
    // time-out that came early.
    const int ready = poll(entries, 2, static_cast<int>(limit.count()));
    if (Requested()) {
        return Wake::kStop;
    }
    return ready > 0 ? Wake::kReadable : Wake::kTimeout;
}

}  // namespace serverlog::program
