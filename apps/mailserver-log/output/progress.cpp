#include "output/progress.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <utility>

namespace serverlog::program {

namespace {

constexpr std::chrono::milliseconds kInterval{200};
constexpr char kEraseLine[] = "\r\x1b[K";

}  // namespace

Progress::Progress(std::string unit, std::uint64_t total) : unit_(std::move(unit)), total_(total) {}

bool Progress::OnTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

Progress::~Progress() {
    Clear();
}

void Progress::Show(std::uint64_t count, std::uint64_t done) {
    if (!on_terminal_) {
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < kInterval) {
        return;
    }
    const std::chrono::duration<double> passed = now - start_;
    std::cerr << kEraseLine << count << ' ' << unit_ << ", "
              << static_cast<std::uint64_t>(static_cast<double>(count) / passed.count()) << "/s";
    if (total_ > 0) {
        std::cerr << ", " << std::min<std::uint64_t>(100, done * 100 / total_) << " %";
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
