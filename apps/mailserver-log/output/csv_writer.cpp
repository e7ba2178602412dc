#include "output/csv_writer.h"

#include <mailserver-log/utils/eight_bytes.h>

namespace serverlog::program {

namespace {

bool NeedsQuotes(std::string_view cell) {
    // All four stand before the hyphen. One look for that is a third of the work of four, and no
    // address and no id has anything else that does.
    if (!utils::HasMarked(cell, [](const utils::EightBytes& bytes) { return bytes.Below('-'); })) {
        return false;
    }
    return utils::HasMarked(cell, [](const utils::EightBytes& bytes) {
        return bytes.Equal(',') | bytes.Equal('"') | bytes.Equal('\r') | bytes.Equal('\n');
    });
}

bool IsFormula(std::string_view cell) {
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

}  // namespace

void CsvWriter::Write(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells) {
        Add(cell);
    }
    EndRow();
}

void CsvWriter::Add(std::string_view cell) {
    const bool quoted = NeedsQuotes(cell);
    if (quoted) {
        row_ += '"';
    }
    if (IsFormula(cell)) {
        row_ += '\'';
    }
    for (std::size_t quote; quoted && (quote = cell.find('"')) != std::string_view::npos;) {
        row_ += cell.substr(0, quote + 1);
        row_ += '"';
        cell.remove_prefix(quote + 1);
    }
    row_ += cell;
    if (quoted) {
        row_ += '"';
    }
    row_ += ',';
}

void CsvWriter::EndRow() {
    if (!row_.empty()) {
        row_.pop_back();  // the comma behind the last cell
    }
    row_ += "\r\n";
    out_.write(row_.data(), static_cast<std::streamsize>(row_.size()));
    row_.clear();
}

}  // namespace serverlog::program
