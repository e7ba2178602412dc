#pragma once

#include <gmock/gmock.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test {

/// The program mailserver-log as a child, with pipes on its three standard streams.
class Program {
 public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    /// Starts it. `environment` comes on top of the test's own.
    explicit Program(std::vector<std::string> arguments, const Environment& environment = {});

    /// Kills it when nobody has waited for it.
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Writes to its standard input, and reads what it writes meanwhile. Stops early when it does
    /// not read any more.
    void Write(std::string_view text);

    /// Stops reading its standard output, as a reader does that goes away.
    void CloseOutput();

    /// Waits until it has written what `done` wants to see; throws std::runtime_error when it ends
    /// or a minute passes before.
    void WaitForOutput(const std::function<bool(const std::string& output)>& done);

    /// Waits until its standard error holds `text`, otherwise as WaitForOutput.
    void WaitForError(const std::string& text);

    void Signal(int signal) const;

    pid_t pid() const { return pid_; }

    struct Result {
        int status;          ///< exit status, or 128 and the number of the signal that ended it
        std::string output;  ///< all of its standard output
        std::string error;   ///< all of its standard error
    };

    /// Closes its standard input and waits for its end, a minute at most.
    Result Wait();

    /// Runs it with `input` as its standard input.
    static Result Run(std::vector<std::string> arguments, std::string_view input = {},
                      const Environment& environment = {});

 private:
    void WaitUntil(const std::function<bool()>& done, std::string_view& unwritten);
    void Exchange(std::string_view& unwritten);
    bool HasEnded() const { return streams_[1] < 0 && streams_[2] < 0; }

    pid_t pid_ = -1;
    int streams_[3] = {-1, -1, -1};
    std::string output_;
    std::string error_;
};

/// Matches what a program ended with. Its texts are values or matchers.
template <class Status, class Output, class Error>
auto Ended(const Status& status, const Output& output, const Error& error) {
    return testing::AllOf(testing::Field("status", &Program::Result::status, status),
                          testing::Field("output", &Program::Result::output, output),
                          testing::Field("error", &Program::Result::error, error));
}

}  // namespace test
