#pragma once

#include <cstddef>
#include <string>

#include "input/arrival.h"
#include "process/stop_signal.h"

namespace serverlog::program {

/// Reads a descriptor line by line and never holds more than one long line in memory.
class LineReader {
 public:
    /// The longest line that is kept whole, in bytes: room for an admin log line with parameters of
    /// 1 MiB after escaping.
    static constexpr std::size_t kLongestLine = std::size_t{2} << 20;

    /// @param descriptor  stays the caller's; must stay open
    /// @param stop        must outlive this object
    /// @param longest     of a longer line only the first longest + 1 bytes are given
    LineReader(int descriptor, const StopSignal& stop, std::size_t longest = kLongestLine);

    /// Gives the next line without its line feed; the last one may have none. Bytes of any kind are
    /// allowed, NUL too. Once a stop is requested it gives what was read already and then kEnd.
    ///
    /// @param wait  whether to wait for a line that is not there yet; kNothing comes only without
    ///
    /// Throws Failure if reading fails.
    Arrival Next(std::string& line, bool wait);

 private:
    bool TakeLine(std::string& line);
    bool TakeRest(std::string& line);
    void DropLongTail();
    void Fill();

    int descriptor_;
    const StopSignal& stop_;
    std::size_t longest_;
    std::string buffer_;
    std::size_t begin_ = 0;    // start of what was not given yet
    std::size_t scanned_ = 0;  // up to here there is no line feed
    bool dropping_ = false;    // in the tail of a line that was too long
    bool ended_ = false;
};

}  // namespace serverlog::program
