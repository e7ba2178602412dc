#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "input/line_reader.h"
#include "input/object_scanner.h"

namespace serverlog::program {

/// Makes messages of the physical lines of a log: a record with raw line feeds in its texts covers
/// several lines, and after a write that was cut short two records can share one.
///
/// A message is a line without a record, or one record with what stands before it. A record ends
/// where its object closes; where a new record or, in a log whose messages have a prefix, a new
/// message starts, which leaves the open one cut short; or when it grows too long.
class RecordJoiner {
 public:
    /// @param longest  the most bytes that an open record may have
    explicit RecordJoiner(std::size_t longest = LineReader::kLongestLine) : longest_(longest) {}

    /// Takes the next physical line, without its line feed.
    ///
    /// @return the messages that are complete now, in order
    std::vector<std::string> Add(std::string_view line);

    /// Takes the end of the input.
    ///
    /// @return the record that is still open, cut short, or nothing
    std::vector<std::string> Finish();

 private:
    bool GoOn(std::string_view& line, std::vector<std::string>& messages);
    void Start(std::string_view line, std::vector<std::string>& messages);

    std::size_t longest_;
    std::string open_;  // the record that goes on in the next line; empty if there is none
    ObjectScanner scanner_;
};

}  // namespace serverlog::program
