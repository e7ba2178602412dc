#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace serverlog::program {

/// Shows on standard error how far a long piece of work has got. Shows nothing unless that is a
/// terminal.
class Progress {
 public:
    /// @param total_bytes  what there is to read in all; 0 if that is not known
    explicit Progress(std::uint64_t total_bytes);

    /// Removes what is shown.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// @param lines  lines done so far
    /// @param bytes  bytes done so far
    void Show(std::size_t lines, std::uint64_t bytes);

    /// Removes what is shown, to make room for a message. The next Show brings it back.
    void Clear();

 private:
    std::uint64_t total_bytes_;
    bool on_terminal_;
    bool shown_ = false;
    std::chrono::steady_clock::time_point last_;
};

}  // namespace serverlog::program
