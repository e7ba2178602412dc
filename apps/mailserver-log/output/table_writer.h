#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace serverlog::program {

/// Writes rows as a table with aligned columns.
///
/// The widths come from the first rows, which are held back for that; all further ones go out as
/// they come, so that a table of any length takes little memory.
class TableWriter {
 public:
    struct Style {
        std::size_t width = 0;      ///< columns of the terminal, lines are cut there; 0: not cut
        bool with_colours = false;  ///< bold headings
    };

    /// @param out       must outlive this object
    /// @param headings  one a column
    TableWriter(std::ostream& out, std::vector<std::string> headings, Style style);

    /// Adds a row with one cell a column, of any text.
    void Write(const std::vector<std::string>& cells);

    /// Writes the rows that are held back; from then on the widths stay as they are. Does nothing
    /// before the first row.
    void Flush();

    /// Writes what is held back. To be called once, behind the last row.
    void Finish();

 private:
    void WriteHeldBack();
    void WriteLine(const std::vector<std::string>& cells, bool bold) const;

    std::ostream& out_;
    Style style_;
    std::vector<std::size_t> widths_;
    std::vector<std::vector<std::string>> held_back_;  // the headings first
    bool flowing_ = false;
};

}  // namespace serverlog::program
