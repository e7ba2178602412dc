#pragma once

#include <unistd.h>

#include <utility>

namespace serverlog::program {

/// Owns a file descriptor and closes it.
class UniqueDescriptor {
 public:
    /// @param descriptor  negative for none
    explicit UniqueDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
    UniqueDescriptor(UniqueDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    UniqueDescriptor& operator=(UniqueDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~UniqueDescriptor() { Close(); }

    /// Closes it now, if there is one.
    void Close() {
        if (descriptor_ >= 0) {
            close(std::exchange(descriptor_, -1));
        }
    }

    int Get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

 private:
    int descriptor_;
};

}  // namespace serverlog::program
