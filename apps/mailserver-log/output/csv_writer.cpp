#include "output/csv_writer.h"

namespace serverlog::program {

void CsvWriter::Write(const std::vector<std::string>& cells) {
    const char* separator = "";
    for (const std::string& cell : cells) {
        out_ << separator;
        WriteCell(cell);
        separator = ",";
    }
    out_ << "\r\n";
}

void CsvWriter::WriteCell(std::string_view cell) {
    constexpr std::string_view kFormulaStarts = "=+-@\t\r";
    constexpr std::string_view kNeedQuotes = ",\"\r\n";
    const bool formula = !cell.empty() && kFormulaStarts.find(cell[0]) != std::string_view::npos;
    const bool quoted = cell.find_first_of(kNeedQuotes) != std::string_view::npos;
    out_ << (quoted ? "\"" : "") << (formula ? "'" : "");
    for (const char c : cell) {
        out_ << (c == '"' ? "\"\"" : std::string_view(&c, 1));
    }
    out_ << (quoted ? "\"" : "");
}

}  // namespace serverlog::program
