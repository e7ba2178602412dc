#include "connections.h"

#include <mailserver/maillog.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

extern "C" {
#include <sys/pidfd.h>  // that of glibc 2.36 does not say itself that it is C
}

namespace serverlog::endpoint {

namespace {

// Too many descriptors or no memory: what others give back may help the next time.
constexpr useconds_t kPauseMicroseconds = 50'000;

// Far longer than a page takes, and short enough for who waits behind an export.
constexpr int kPatienceMilliseconds = 100;

void SetChildHandler(void (*handler)(int), int flags) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigaction(SIGCHLD, &action, nullptr);
}

int Accept() {
    for (;;) {
        const int connection = accept4(STDIN_FILENO, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection >= 0) {
            return connection;
        }
        switch (errno) {
            case EINTR:
            case ECONNABORTED:
                break;
            case EMFILE:
            case ENFILE:
            case ENOBUFS:
            case ENOMEM:
                usleep(kPauseMicroseconds);
                break;
            default:
                throw std::system_error(errno, std::generic_category(), "cannot wait for requests");
        }
    }
}

// Short requests are answered one after the other. All at once they would queue up for the lock of
// the store, which is not first come, first served: of 50, one in twenty would take four times as
// long as most.
void AwaitEnd(pid_t child) {
    const int process = pidfd_open(child, 0);
    if (process < 0) {
        return;  // it has ended
    }
    pollfd ended = {process, POLLIN, 0};
    poll(&ended, 1, kPatienceMilliseconds);
    close(process);
}

// The socket to wait at is closed by it.
void TakeOver(int connection) {
    dup2(connection, STDIN_FILENO);
    dup2(connection, STDOUT_FILENO);
    if (connection != STDOUT_FILENO) {
        close(connection);
    }
}

}  // namespace

bool HasConnections() {
    int listens = 0;
    socklen_t size = sizeof listens;
    return getsockopt(STDIN_FILENO, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) == 0 &&
           listens != 0;
}

void AwaitConnection() {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    SetChildHandler(SIG_DFL, SA_NOCLDWAIT);
    for (;;) {
        const int connection = Accept();
        const pid_t child = fork();
        if (child == 0) {
            SetChildHandler(SIG_DFL, 0);  // a request waits for the programs that it starts
            TakeOver(connection);
            return;
        }
        if (child < 0) {
            maillog(LOG_ERR, "cannot start a process for a request: %s", std::strerror(errno));
        }
        close(connection);
        if (child > 0) {
            AwaitEnd(child);
        }
    }
}

void EndConnection() {
    shutdown(STDOUT_FILENO, SHUT_WR);
    char rest[4096];
    ssize_t count = 0;
    do {
        count = read(STDIN_FILENO, rest, sizeof rest);
    } while (count > 0 || (count < 0 && errno == EINTR));
}

}  // namespace serverlog::endpoint
