#pragma once

#include <unistd.h>

#include <utility>

namespace platform {

/// Owns an open file descriptor and closes it at the end.
class FileDescriptor {
 public:
    FileDescriptor() = default;
    /// @param descriptor  what to own; negative for none, as open(2) gives it on failure
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor() { Reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(other.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }

    /// The descriptor, still owned here; negative for none.
    int Get() const { return descriptor_; }

    /// Whether there is one.
    explicit operator bool() const { return descriptor_ >= 0; }

    /// Hands the descriptor over to the caller.
    int Release() { return std::exchange(descriptor_, -1); }

    /// Closes the descriptor.
    void Reset() {
        if (descriptor_ >= 0) {
            close(std::exchange(descriptor_, -1));
        }
    }

 private:
    int descriptor_ = -1;
};

}  // namespace platform
