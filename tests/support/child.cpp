#include "support/child.h"

#include <linux/capability.h>
#include <sched.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <fstream>

#include "support/check.h"
#include "support/text_file.h"

namespace test {

namespace {

[[noreturn]] void Work(const std::function<std::string()>& work, int result) {
    std::string text;
    try {
        text = work();
    } catch (const std::exception& exception) {
        text = std::string("exception: ") + exception.what();
    }
    const bool written =
        write(result, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    _exit(written ? 0 : 1);
}

}  // namespace

Child::Child(const std::function<std::string()>& work) {
    int ends[2];
    Check(pipe(ends) == 0, "pipe");
    pid_ = fork();
    Check(pid_ >= 0, "fork");
    if (pid_ == 0) {
        close(ends[0]);
        Work(work, ends[1]);
    }
    close(ends[1]);
    result_ = ends[0];
}

Child::~Child() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    close(result_);
}

std::string Child::Wait() {
    std::string text;
    char buffer[4096];
    for (ssize_t size; (size = read(result_, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(size));
    }
    int status = 0;
    Check(waitpid(pid_, &status, 0) == pid_, "waitpid");
    pid_ = -1;
    return WIFSIGNALED(status) ? "killed by signal " + std::to_string(WTERMSIG(status)) : text;
}

void Child::AwaitWaitForLock() const {
    const std::string waiter = "-> FLOCK  ADVISORY  WRITE " + std::to_string(pid_) + " ";
    while (ReadTextFile("/proc/locks").find(waiter) == std::string::npos) {
        sched_yield();
    }
}

std::string InChild(const std::function<std::string()>& work) {
    return Child(work).Wait();
}

char StateOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string pid;
    std::string name;
    char state = '?';
    file >> pid >> name >> state;
    return state;
}

std::string InChildWithoutRights(const std::function<std::string()>& work) {
    return InChild([&work] {
        DropCapabilities();
        return work();
    });
}

void DropCapabilities() {
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    Check(syscall(SYS_capset, &header, none) == 0, "capset");
}

void SetIds(const Ids& user, const Ids& group) {
    Check(setresgid(group.real, group.effective, group.saved) == 0, "setresgid");
    Check(setresuid(user.real, user.effective, user.saved) == 0, "setresuid");
}

bool HasSecondUser() {
    const auto become_other = [] {
        SetIds(kOtherForGood, kOtherForGood);
        return std::string("other");
    };
    return InChild(become_other) == "other";
}

}  // namespace test
