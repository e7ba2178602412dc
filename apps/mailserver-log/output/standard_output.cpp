#include "output/standard_output.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

namespace serverlog::program {

void IgnoreBrokenPipe() {
    signal(SIGPIPE, SIG_IGN);
}

bool ReaderHasGone() {
    pollfd entry = {STDOUT_FILENO, 0, 0};
    return poll(&entry, 1, 0) > 0 && (entry.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace serverlog::program
