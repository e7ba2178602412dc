#include "support/program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

#include "support/check.h"

namespace test {

namespace {

constexpr std::chrono::minutes kLongestWait{1};

[[noreturn]] void Become(std::vector<std::string>& words, const Program::Environment& environment) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    execv(arguments[0], arguments.data());
    _exit(127);
}

void Close(int& descriptor) {
    if (descriptor >= 0) {
        close(std::exchange(descriptor, -1));
    }
}

}  // namespace

Program::Program(std::vector<std::string> arguments, const Environment& environment) {
    signal(SIGPIPE, SIG_IGN);
    arguments.insert(arguments.begin(), PROGRAM_PATH);
    int pipes[3][2];
    for (auto& ends : pipes) {
        Check(pipe2(ends, O_CLOEXEC) == 0, "pipe2");
    }
    pid_ = fork();
    Check(pid_ >= 0, "fork");
    if (pid_ == 0) {
        signal(SIGPIPE, SIG_DFL);
        for (int stream = 0; stream < 3; ++stream) {
            dup2(pipes[stream][stream == 0 ? 0 : 1], stream);
        }
        Become(arguments, environment);
    }
    for (int stream = 0; stream < 3; ++stream) {
        streams_[stream] = pipes[stream][stream == 0 ? 1 : 0];
        close(pipes[stream][stream == 0 ? 0 : 1]);
        fcntl(streams_[stream], F_SETFL, O_NONBLOCK);
    }
}

Program::~Program() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    for (int& stream : streams_) {
        Close(stream);
    }
}

void Program::Write(std::string_view text) {
    WaitUntil([this, &text] { return text.empty() || HasEnded(); }, text);
}

void Program::CloseOutput() {
    Close(streams_[1]);
}

void Program::WaitForOutput(const std::function<bool(const std::string&)>& done) {
    std::string_view nothing;
    WaitUntil([this, &done] { return done(output_); }, nothing);
}

void Program::WaitForError(const std::string& text) {
    std::string_view nothing;
    WaitUntil([this, &text] { return error_.find(text) != std::string::npos; }, nothing);
}

void Program::Signal(int signal) const {
    Check(kill(pid_, signal) == 0, "kill");
}

Program::Result Program::Wait() {
    Close(streams_[0]);
    std::string_view nothing;
    WaitUntil([this] { return HasEnded(); }, nothing);
    int status = 0;
    Check(waitpid(pid_, &status, 0) == pid_, "waitpid");
    pid_ = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), output_, error_};
}

Program::Result Program::Run(std::vector<std::string> arguments, std::string_view input,
                             const Environment& environment) {
    Program program(std::move(arguments), environment);
    program.Write(input);
    return program.Wait();
}

void Program::WaitUntil(const std::function<bool()>& done, std::string_view& unwritten) {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    while (!done()) {
        if (HasEnded() || std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("mailserver-log did not do what was waited for\noutput: " +
                                     output_ + "\nerror: " + error_);
        }
        Exchange(unwritten);
    }
}

void Program::Exchange(std::string_view& unwritten) {
    pollfd entries[3] = {{unwritten.empty() ? -1 : streams_[0], POLLOUT, 0},
                         {streams_[1], POLLIN, 0},
                         {streams_[2], POLLIN, 0}};
    poll(entries, 3, 1000);
    if (entries[0].revents != 0) {
        const ssize_t count = write(streams_[0], unwritten.data(), unwritten.size());
        if (count < 0 && errno == EPIPE) {
            unwritten = {};
        }
        unwritten.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    for (int stream = 1; stream < 3; ++stream) {
        if (entries[stream].revents == 0) {
            continue;
        }
        char buffer[1 << 16];
        const ssize_t count = read(streams_[stream], buffer, sizeof buffer);
        if (count > 0) {
            (stream == 1 ? output_ : error_).append(buffer, static_cast<std::size_t>(count));
        } else if (count == 0) {
            Close(streams_[stream]);
        }
    }
}

}  // namespace test
