#pragma once

#include <string>

#include "input/line_reader.h"
#include "input/message_source.h"
#include "process/unique_descriptor.h"

namespace serverlog::program {

/// The lines of a stream: standard input, a file, a pipe. A record may span several of them.
class StreamSource : public MessageSource {
 public:
    /// @param input  closed at the end
    /// @param stop   must outlive this object
    StreamSource(UniqueDescriptor input, const StopSignal& stop);

    /// Once a stop is requested it gives what was read already and then kEnd.
    Arrival Next(std::string& line, bool wait) override;
    bool GivesWholeMessages() const override { return false; }

 private:
    UniqueDescriptor input_;
    LineReader lines_;
};

}  // namespace serverlog::program
