#include "output/csv_writer.h"

#include <algorithm>
#include <array>

namespace serverlog::program {

namespace {

// Looked up by the byte: every byte of an export passes here.
constexpr std::array<bool, 256> kNeedQuotes = [] {
    std::array<bool, 256> need_quotes = {};
    for (const char c : {',', '"', '\r', '\n'}) {
        need_quotes[static_cast<unsigned char>(c)] = true;
    }
    return need_quotes;
}();

bool NeedsQuotes(char c) {
    return kNeedQuotes[static_cast<unsigned char>(c)];
}

}  // namespace

void CsvWriter::Write(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells) {
        Add(cell);
    }
    EndRow();
}

void CsvWriter::Add(std::string_view cell) {
    constexpr std::string_view kFormulaStarts = "=+-@\t\r";
    const bool formula = !cell.empty() && kFormulaStarts.find(cell[0]) != std::string_view::npos;
    const bool quoted = std::any_of(cell.begin(), cell.end(), NeedsQuotes);
    row_ += quoted ? "\"" : "";
    row_ += formula ? "'" : "";
    for (std::size_t quote; quoted && (quote = cell.find('"')) != std::string_view::npos;) {
        row_ += cell.substr(0, quote + 1);
        row_ += '"';
        cell.remove_prefix(quote + 1);
    }
    row_ += cell;
    row_ += quoted ? "\"," : ",";
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
