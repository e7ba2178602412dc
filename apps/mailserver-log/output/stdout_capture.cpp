#include "output/stdout_capture.h"

#include <sys/types.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace serverlog::program {

namespace {

ssize_t HandOn(void* take, const char* text, std::size_t size) {
    const bool taken = (*static_cast<StdoutCapture::Take*>(take))({text, size});
    return taken ? static_cast<ssize_t>(size) : 0;
}

}  // namespace

// fopencookie(3), and that stdout can be assigned, belong to the GNU C library.
StdoutCapture::StdoutCapture(Take take) : take_(std::move(take)), former_(stdout) {
    cookie_io_functions_t functions = {};
    functions.write = HandOn;
    std::FILE* stream = fopencookie(&take_, "w", functions);
    if (stream == nullptr) {
        throw std::system_error(errno, std::generic_category(), "a stream for the document");
    }
    std::fflush(former_);
    stdout = stream;
}

StdoutCapture::~StdoutCapture() {
    std::fclose(std::exchange(stdout, former_));
}

}  // namespace serverlog::program
