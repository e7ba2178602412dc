#include "input/keep_alive.h"

#include <chrono>
#include <utility>

namespace serverlog::program {

namespace {

// Well below rsyslog's default of 10 s for a confirmation.
constexpr std::chrono::seconds kInterval{2};

}  // namespace

KeepAlive::KeepAlive(std::function<void()> sign)
    : sign_(std::move(sign)), thread_([this] { Run(); }) {}

KeepAlive::~KeepAlive() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void KeepAlive::Begin() {
    const std::lock_guard lock(mutex_);
    working_ = true;
    changed_.notify_one();
}

void KeepAlive::End() {
    const std::lock_guard lock(mutex_);
    working_ = false;
}

void KeepAlive::Run() {
    std::unique_lock lock(mutex_);
    while (!ending_) {
        changed_.wait(lock, [this] { return working_ || ending_; });
        if (!changed_.wait_for(lock, kInterval, [this] { return ending_; }) && working_) {
            sign_();
        }
    }
}

}  // namespace serverlog::program
