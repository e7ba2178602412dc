#include "support/traced_child.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <stdexcept>
#include <string>

namespace test {

namespace {

constexpr int kSyscallStop = SIGTRAP | 0x80;  // with PTRACE_O_TRACESYSGOOD

bool IsChange(const __ptrace_syscall_info& call) {
    switch (call.entry.nr) {
        case SYS_openat:
            return (call.entry.args[2] & O_CREAT) != 0;
        case SYS_write:
        case SYS_pwrite64:
        case SYS_ftruncate:
        case SYS_fsync:
        case SYS_fdatasync:
        case SYS_fchmod:
        case SYS_fchmodat:
        case SYS_fchown:
        case SYS_fchownat:
        case SYS_mkdirat:
        case SYS_unlinkat:
        case SYS_renameat2:
#ifdef SYS_open
        case SYS_mkdir:
        case SYS_unlink:
        case SYS_rename:
        case SYS_chmod:
#endif
            return true;
        default:
            return false;
    }
}

[[noreturn]] void Work(const std::function<void()>& work) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    work();
    _exit(0);
}

class Tracer {
 public:
    explicit Tracer(pid_t pid) : pid_(pid) {
        WaitForStop();
        const long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL;
        if (ptrace(PTRACE_SETOPTIONS, pid_, nullptr, options) != 0) {
            throw std::runtime_error("the process can't be traced");
        }
    }

    ~Tracer() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }

    Tracer(const Tracer&) = delete;
    Tracer& operator=(const Tracer&) = delete;

    /// False when the work is done.
    bool GoToNextChange() {
        for (int signal = 0;;) {
            ptrace(PTRACE_SYSCALL, pid_, nullptr, signal);
            const int stop = WaitForStop();
            if (stop < 0) {
                return false;
            }
            signal = stop == kSyscallStop ? 0 : stop;
            if (stop == kSyscallStop && IsAtChange()) {
                return true;
            }
        }
    }

 private:
    // The signal that it stopped for, -1 when the work is done.
    int WaitForStop() {
        int status = 0;
        while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
        if (WIFSTOPPED(status)) {
            return WSTOPSIG(status);
        }
        pid_ = -1;
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
            throw std::runtime_error("the traced work ended with " + std::to_string(status));
        }
        return -1;
    }

    bool IsAtChange() const {
        __ptrace_syscall_info call = {};
        ptrace(PTRACE_GET_SYSCALL_INFO, pid_, reinterpret_cast<void*>(sizeof call), &call);
        return call.op == PTRACE_SYSCALL_INFO_ENTRY && IsChange(call);
    }

    pid_t pid_;
};

}  // namespace

std::size_t KillBeforeChange(const std::function<void()>& work, std::size_t change) {
    const pid_t pid = fork();
    if (pid == 0) {
        Work(work);
    }
    if (pid < 0) {
        throw std::runtime_error("fork");
    }
    Tracer tracer(pid);
    std::size_t made = 0;
    while (tracer.GoToNextChange() && made < change) {
        ++made;
    }
    return made;
}

std::size_t CountChanges(const std::function<void()>& work) {
    return KillBeforeChange(work, std::numeric_limits<std::size_t>::max());
}

}  // namespace test
