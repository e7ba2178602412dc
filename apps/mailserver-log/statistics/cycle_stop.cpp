#include "statistics/cycle_stop.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <cstddef>

namespace serverlog::program {

namespace {

constexpr std::array<int, 3> kSignals = {SIGTERM, SIGINT, SIGALRM};

// What the signal handler needs can only be global.
volatile sig_atomic_t stop_requested = 0;
struct sigaction former_actions[kSignals.size()];

// A signal ends only a sleep that has begun. So the alarm follows, and itself again, until there is
// one to end.
void RequestStop(int /*signal*/) {
    stop_requested = 1;
    alarm(1);
}

}  // namespace

CycleStop::CycleStop() {
    stop_requested = 0;
    struct sigaction action = {};
    action.sa_handler = RequestStop;
    action.sa_flags = SA_RESTART;  // sleeps end all the same, see signal(7)
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &action, &former_actions[i]);
    }
}

CycleStop::~CycleStop() {
    alarm(0);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &former_actions[i], nullptr);
    }
}

bool CycleStop::Requested() const {
    return stop_requested != 0;
}

}  // namespace serverlog::program
