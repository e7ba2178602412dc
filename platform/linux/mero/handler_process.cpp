#include "mero/handler_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "common/file_text.h"

namespace platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kCannotStart = 127;

// Moves a descriptor out of the way of the three standard ones, which may be closed in this
// process.
FileDescriptor AboveStandard(FileDescriptor descriptor) {
    if (descriptor.Get() > STDERR_FILENO || !descriptor) {
        return descriptor;
    }
    return FileDescriptor(fcntl(descriptor.Get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

// A file in memory instead of a pipe: the handler may read it when and as often as it likes, and
// one that never reads neither blocks this process nor sends it SIGPIPE.
FileDescriptor MakeInput(const std::string& text) {
    FileDescriptor file = AboveStandard(FileDescriptor(memfd_create("input", MFD_CLOEXEC)));
    if (!file || !WriteText(file.Get(), text) || lseek(file.Get(), 0, SEEK_SET) != 0) {
        return FileDescriptor();
    }
    return file;
}

bool MakePipe(FileDescriptor& read_end, FileDescriptor& write_end) {
    std::array<int, 2> ends = {-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    read_end = FileDescriptor(ends[0]);
    write_end = AboveStandard(FileDescriptor(ends[1]));
    return write_end && fcntl(read_end.Get(), F_SETFL, O_NONBLOCK) == 0;
}

// Runs in the forked child of a process that may have threads: nothing here but calls that are
// safe in a signal handler (signal-safety(7)).
[[noreturn]] void Execute(char* const* arguments, int input, int output) {
    static const char* const kEnvironment[] = {
        "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", "LANG=C.UTF-8",
        nullptr};
    setpgid(0, 0);
    sigset_t no_signals;
    sigemptyset(&no_signals);
    sigprocmask(SIG_SETMASK, &no_signals, nullptr);
    signal(SIGPIPE, SIG_DFL);
    signal(SIGCHLD, SIG_DFL);
    umask(022);
    const gid_t gid = getegid();
    const uid_t uid = geteuid();
    if (setresgid(gid, gid, gid) == 0 && setresuid(uid, uid, uid) == 0 && chdir("/") == 0 &&
        dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0) {
        close_range(STDERR_FILENO + 1, ~0U, 0);
        execve(arguments[0], arguments, const_cast<char* const*>(kEnvironment));
    }
    _exit(kCannotStart);
}

std::string DescribeStatus(int status) {
    if (WIFSIGNALED(status)) {
        return "killed by signal " + std::to_string(WTERMSIG(status));
    }
    const int number = WEXITSTATUS(status);
    // A shell ends so too when it does not find a program.
    const char* hint =
        number == kCannotStart ? ": it, or a program that it needs, cannot be started" : "";
    return "ended with status " + std::to_string(number) + hint;
}

pid_t WaitFor(pid_t process, int& status) {
    pid_t result;
    do {
        result = waitpid(process, &status, 0);
    } while (result < 0 && errno == EINTR);
    return result;
}

int MillisecondsUntil(steady_clock::time_point deadline) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    return static_cast<int>(std::max<milliseconds::rep>(left.count(), 0));
}

}  // namespace

HandlerProcess::Outcome HandlerProcess::Run(const std::vector<std::string>& arguments,
                                            const std::string& input, std::chrono::seconds limit,
                                            std::size_t size_limit) {
    const auto deadline = steady_clock::now() + limit;
    if (!Start(arguments, input)) {
        reason_ = std::string("cannot be started: ") + std::strerror(errno);
        return Outcome::Failed;
    }
    const Outcome outcome = Collect(deadline, size_limit);
    if (outcome != Outcome::Done) {
        Kill();
        return outcome;
    }
    return Finish();
}

bool HandlerProcess::Start(const std::vector<std::string>& arguments, const std::string& input) {
    const FileDescriptor input_file = MakeInput(input);
    FileDescriptor write_end;
    if (!input_file || !MakePipe(output_end_, write_end)) {
        return false;
    }
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
        Execute(pointers.data(), input_file.Get(), write_end.Get());
    }
    if (process_ < 0) {
        return false;
    }
    setpgid(process_, process_);  // the child does so too: whoever comes first
    process_end_ = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
    if (process_end_ || errno == ESRCH) {
        return true;  // it is gone already where this process ignores SIGCHLD
    }
    const int error = errno;
    Kill();
    errno = error;
    return false;
}

// Takes the output up to the end of the process itself: what it has started may live on and hold
// the pipe open.
HandlerProcess::Outcome HandlerProcess::Collect(steady_clock::time_point deadline,
                                                std::size_t size_limit) {
    for (bool ended = !process_end_;;) {
        if (!ReadOutput(size_limit)) {
            return Outcome::Failed;
        }
        if (ended) {
            return Outcome::Done;
        }
        std::array<pollfd, 2> entries = {
            {{output_end_.Get(), POLLIN, 0}, {process_end_.Get(), POLLIN, 0}}};
        const int ready = poll(entries.data(), entries.size(), MillisecondsUntil(deadline));
        if (ready < 0 && errno != EINTR) {
            reason_ = std::string("cannot be waited for: ") + std::strerror(errno);
            return Outcome::Failed;
        }
        if (ready == 0) {
            reason_ = "took too long and was killed";
            return Outcome::TimedOut;
        }
        ended = ready > 0 && entries[1].revents != 0;
    }
}

// Takes what lies in the pipe; false when that is too much or cannot be read.
bool HandlerProcess::ReadOutput(std::size_t size_limit) {
    std::array<char, 1 << 16> buffer;
    while (output_end_) {
        const ssize_t size = read(output_end_.Get(), buffer.data(), buffer.size());
        if (size < 0 && errno == EAGAIN) {
            break;
        }
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size <= 0) {
            output_end_.Reset();
            continue;
        }
        output_.append(buffer.data(), static_cast<std::size_t>(size));
        if (output_.size() > size_limit) {
            reason_ = "wrote more than " + std::to_string(size_limit) + " bytes and was killed";
            return false;
        }
    }
    return true;
}

HandlerProcess::Outcome HandlerProcess::Finish() {
    int status = 0;
    // Where this process ignores SIGCHLD nobody knows the status, and the output alone counts.
    if (WaitFor(process_, status) < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) {
        return Outcome::Done;
    }
    reason_ = DescribeStatus(status);
    return Outcome::Failed;
}

void HandlerProcess::Kill() {
    // Where killing is refused, waiting would last as long as the handler likes.
    if (kill(-process_, SIGKILL) == 0) {
        int status = 0;
        WaitFor(process_, status);
    }
}

}  // namespace platform
