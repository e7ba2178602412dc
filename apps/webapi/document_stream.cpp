#include "document_stream.h"

#include <stdio_ext.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace serverlog::endpoint {

namespace {

ssize_t Send(void* sent, const char* text, std::size_t size) {
    ssize_t count;
    do {
        count = write(STDOUT_FILENO, text, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        return 0;  // the sign of an error here, see fopencookie(3)
    }
    *static_cast<std::size_t*>(sent) += static_cast<std::size_t>(count);
    return count;
}

}  // namespace

DocumentStream::DocumentStream() : former_(stdout) {
    std::FILE* const stream = fopencookie(&sent_, "w", {nullptr, Send, nullptr, nullptr});
    if (stream == nullptr) {
        throw std::system_error(errno, std::generic_category(), "fopencookie");
    }
    stdout = stream;
}

DocumentStream::~DocumentStream() {
    std::fclose(stdout);
    stdout = former_;
}

bool DocumentStream::TakeBack() {
    if (sent_ != 0) {
        return false;
    }
    __fpurge(stdout);
    return true;
}

}  // namespace serverlog::endpoint
