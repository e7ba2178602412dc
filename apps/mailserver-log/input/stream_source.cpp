#include "input/stream_source.h"

#include <fcntl.h>

#include <utility>

namespace serverlog::program {

namespace {

// The largest that anybody may ask for. What comes while rows are stored waits in the pipe and is
// then stored together; with the usual 64 KiB a log that is piped in takes twice as long.
constexpr int kPipeSize = 1 << 20;

}  // namespace

StreamSource::StreamSource(UniqueDescriptor input, const StopSignal& stop)
    : input_(std::move(input)), lines_(input_.Get(), stop) {
    fcntl(input_.Get(), F_SETPIPE_SZ, kPipeSize);  // does nothing to what is no pipe
}

Arrival StreamSource::Next(std::string& line, bool wait) {
    return lines_.Next(line, wait);
}

}  // namespace serverlog::program
