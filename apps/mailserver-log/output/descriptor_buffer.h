#pragma once

#include <array>
#include <streambuf>

#include "process/stop_signal.h"

namespace serverlog::program {

/// A stream buffer over a file descriptor that knows why a write failed.
class DescriptorBuffer : public std::streambuf {
 public:
    /// @param descriptor  to write to; stays open
    /// @param stop        once it is requested all writes fail; must outlive this object
    DescriptorBuffer(int descriptor, const StopSignal& stop);

    /// The errno of the first write that failed, ECANCELED for a stop; 0 as long as none did.
    int error() const { return error_; }

 protected:
    int_type overflow(int_type character) override;
    int sync() override;

 private:
    bool WriteOut();

    int descriptor_;
    const StopSignal& stop_;
    int error_ = 0;
    std::array<char, 1 << 16> bytes_;
};

}  // namespace serverlog::program
