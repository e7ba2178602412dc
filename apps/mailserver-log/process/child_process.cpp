#include "process/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <utility>

#include "process/failure.h"

namespace serverlog::program {

namespace {

std::vector<char*> Arguments(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    return arguments;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw Failure(DescribeErrno("cannot make a pipe"));
    }
    output_ = UniqueDescriptor(ends[0]);
    const UniqueDescriptor child_end(ends[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, child_end.Get(), STDOUT_FILENO);
    const int error = posix_spawnp(&pid_, command[0].c_str(), &actions, nullptr,
                                   Arguments(command).data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        pid_ = -1;
        errno = error;
        throw Failure(DescribeErrno("cannot run " + command[0]));
    }
}

ChildProcess::~ChildProcess() {
    if (pid_ > 0) {
        kill(pid_, SIGTERM);
        output_.Close();  // nor may it be stuck in writing
        Wait();
    }
}

int ChildProcess::Wait() {
    const pid_t pid = std::exchange(pid_, -1);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace serverlog::program
