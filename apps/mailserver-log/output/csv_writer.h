#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace serverlog::program {

/// Writes rows as CSV (RFC 4180): lines end with CR and LF, and a cell with a comma, a quote or a
/// line end stands in quotes.
///
/// A cell that a spreadsheet would take for a formula, since it begins with "=", "+", "-", "@", a
/// tab or a CR, gets an apostrophe in front: log texts come from strangers.
class CsvWriter {
 public:
    /// @param out  must outlive this object
    explicit CsvWriter(std::ostream& out) : out_(out) {}

    void Write(const std::vector<std::string>& cells);

    /// Adds a cell to the row that EndRow writes.
    void Add(std::string_view cell);
    void EndRow();

 private:
    std::ostream& out_;
    std::string row_;
};

}  // namespace serverlog::program
