#include "output/csv_writer.h"

namespace serverlog::program {

void CsvWriter::Write(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells) {
        Add(cell);
    }
    EndRow();
}

void CsvWriter::AddGuarded(std::string_view cell, bool quoted) {
    if (quoted) {
        row_.Append('"');
    }
    if (IsFormula(cell)) {
        row_.Append('\'');
    }
    for (std::size_t quote; quoted && (quote = cell.find('"')) != std::string_view::npos;) {
        row_.Append(cell.substr(0, quote + 1));
        row_.Append('"');
        cell.remove_prefix(quote + 1);
    }
    row_.Append(cell);
    row_.Append(quoted ? "\"," : ",");
}

void CsvWriter::EndRow() {
    if (!row_.Empty()) {
        row_.RemoveLast();  // the comma behind the last cell
    }
    row_.Append("\r\n");
    const std::string_view row = row_.Text();
    out_.write(row.data(), static_cast<std::streamsize>(row.size()));
    row_.Clear();
}

}  // namespace serverlog::program
