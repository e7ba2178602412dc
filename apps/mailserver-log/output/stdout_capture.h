#pragma once

#include <cstdio>
#include <functional>
#include <string_view>

namespace serverlog::program {

/// Hands on what the process writes to C's stdout while this object lives. One object at a time.
class StdoutCapture {
 public:
    /// Takes a piece of the output. False, with the reason in errno, makes the write fail; what
    /// comes behind that may be offered again.
    using Take = std::function<bool(std::string_view)>;

    /// Throws std::system_error if there is no memory for it.
    explicit StdoutCapture(Take take);

    /// Hands on what is left, and gives stdout back.
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;

 private:
    Take take_;
    std::FILE* former_;
};

}  // namespace serverlog::program
