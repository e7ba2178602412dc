#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace serverlog::program {

namespace {

constexpr std::chrono::milliseconds kInterval{200};
constexpr char kEraseLine[] = "\r\x1b[K";

}  // namespace

Progress::Progress(std::uint64_t total_bytes)
    : total_bytes_(total_bytes), on_terminal_(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
    Clear();
}

void Progress::Show(std::size_t lines, std::uint64_t bytes) {
    const auto now = std::chrono::steady_clock::now();
    if (!on_terminal_ || now - last_ < kInterval) {
        return;
    }
    std::cerr << kEraseLine << lines << " lines";
    if (total_bytes_ > 0) {
        std::cerr << ", " << std::min<std::uint64_t>(100, bytes * 100 / total_bytes_) << " %";
    }
    std::cerr << std::flush;
    last_ = now;
    shown_ = true;
}

void Progress::Clear() {
    if (shown_) {
        std::cerr << kEraseLine << std::flush;
    }
    shown_ = false;
    last_ = {};
}

}  // namespace serverlog::program
