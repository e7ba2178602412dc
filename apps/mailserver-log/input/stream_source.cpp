#include "input/stream_source.h"

#include <utility>

namespace serverlog::program {

StreamSource::StreamSource(UniqueDescriptor input, const StopSignal& stop)
    : input_(std::move(input)), lines_(input_.Get(), stop) {}

Arrival StreamSource::Next(std::string& line, bool wait) {
    return lines_.Next(line, wait);
}

}  // namespace serverlog::program
