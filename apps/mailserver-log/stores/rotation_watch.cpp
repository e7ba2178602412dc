#include "stores/rotation_watch.h"

#include <chrono>
#include <filesystem>
#include <iostream>

#include "output/progress.h"
#include "output/readable.h"

namespace serverlog::program {

namespace {

constexpr std::chrono::milliseconds kInterval{500};
constexpr char kEraseLine[] = "\r\x1b[K";

}  // namespace

RotationWatch::RotationWatch(std::string name, std::string work_path)
    : name_(std::move(name)), work_path_(std::move(work_path)) {
    if (Progress::OnTerminal()) {
        thread_ = std::thread([this] { Watch(); });
    }
}

RotationWatch::~RotationWatch() {
    if (!thread_.joinable()) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        over_ = true;
    }
    over_changed_.notify_one();
    thread_.join();
}

void RotationWatch::Watch() {
    using std::chrono::steady_clock;
    const auto start = steady_clock::now();
    std::unique_lock<std::mutex> lock(mutex_);
    while (!over_changed_.wait_for(lock, kInterval, [this] { return over_; })) {
        std::error_code error;
        const std::uintmax_t size = std::filesystem::file_size(work_path_, error);
        const auto seconds =
            std::chrono::duration_cast<std::chrono::seconds>(steady_clock::now() - start);
        std::cerr << kEraseLine << "rotating " << name_ << ": " << ReadableSize(error ? 0 : size)
                  << " in the new file, " << seconds.count() << " s" << std::flush;
    }
    std::cerr << kEraseLine << std::flush;
}

}  // namespace serverlog::program
