#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace serverlog::program {

/// Shows on standard error how far a long piece of work has got. Shows nothing unless that is a
/// terminal.
class Progress {
 public:
    /// @param unit   what is counted, such as "rows"
    /// @param total  what there is to do in all; 0 if that is not known
    Progress(std::string unit, std::uint64_t total);

    /// Removes what is shown.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Whether it shows anything.
    static bool OnTerminal();

    /// @param count  units done so far
    /// @param done   how much of the total that is
    void Show(std::uint64_t count, std::uint64_t done);

    /// Removes what is shown, to make room for a message. The next Show brings it back.
    void Clear();

 private:
    std::string unit_;
    std::uint64_t total_;
    bool on_terminal_ = OnTerminal();
    bool shown_ = false;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point last_;
};

}  // namespace serverlog::program
