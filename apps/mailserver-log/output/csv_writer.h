#pragma once

#include <mailserver-log/utils/byte_block.h>
#include <mailserver-log/utils/text_buffer.h>

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
    void Add(std::string_view cell) {
        const bool quoted = utils::HasMarked(cell, [](const utils::ByteBlock& bytes) {
            return bytes.Equal(',') | bytes.Equal('"') | bytes.Equal('\r') | bytes.Equal('\n');
        });
        if (quoted || IsFormula(cell)) {
            AddGuarded(cell, quoted);
            return;
        }
        char* const end = utils::TextBuffer::Copy(cell, row_.Room(cell.size() + 1));
        *end = ',';
        row_.EndAt(end + 1);
    }
    void EndRow();

 private:
    static bool IsFormula(std::string_view cell) {
        if (cell.empty()) {
            return false;
        }
        switch (cell.front()) {
            case '=':
            case '+':
            case '-':
            case '@':
            case '\t':
            case '\r':
                return true;
            default:
                return false;
        }
    }

    void AddGuarded(std::string_view cell, bool quoted);

    std::ostream& out_;
    utils::TextBuffer row_;
};

}  // namespace serverlog::program
