#pragma once

#include <cstddef>
#include <cstdio>

namespace serverlog::endpoint {

/// Stands in the place of C's stdout while a method writes its document there, so that it can be
/// told whether the client has got any of it.
///
/// One object at a time in a process.
class DocumentStream {
 public:
    /// Throws std::system_error if there is no memory for it.
    DocumentStream();

    /// Sends what has not been sent yet, and puts the former stdout back.
    ~DocumentStream();
    DocumentStream(const DocumentStream&) = delete;
    DocumentStream& operator=(const DocumentStream&) = delete;

    /// Drops what was written, if the client has not got any of it yet.
    ///
    /// @return whether it could be dropped
    bool TakeBack();

 private:
    std::FILE* former_;
    std::size_t sent_ = 0;
};

}  // namespace serverlog::endpoint
