#include "output/table_writer.h"

#include <algorithm>
#include <utility>

#include "output/display_text.h"

namespace serverlog::program {

namespace {

constexpr std::size_t kRowsForWidths = 1000;
constexpr char kGap[] = "  ";
constexpr char kBold[] = "\x1b[1m";
constexpr char kPlain[] = "\x1b[0m";

}  // namespace

TableWriter::TableWriter(std::ostream& out, std::vector<std::string> headings, Style style)
    : out_(out), style_(style), widths_(headings.size()) {
    held_back_.push_back(std::move(headings));
}

void TableWriter::Write(const std::vector<std::string>& cells) {
    std::vector<std::string> visible;
    visible.reserve(cells.size());
    for (const std::string& cell : cells) {
        visible.push_back(VisibleText(cell));
    }
    if (flowing_) {
        WriteLine(visible, false);
        return;
    }
    held_back_.push_back(std::move(visible));
    if (held_back_.size() > kRowsForWidths) {
        WriteHeldBack();
    }
}

void TableWriter::Flush() {
    if (held_back_.size() > 1) {
        WriteHeldBack();
    }
}

void TableWriter::Finish() {
    if (!flowing_) {
        WriteHeldBack();
    }
}

void TableWriter::WriteHeldBack() {
    for (const auto& cells : held_back_) {
        for (std::size_t i = 0; i < widths_.size(); ++i) {
            widths_[i] = std::max(widths_[i], DisplayWidth(cells[i]));
        }
    }
    bool heading = true;
    for (const auto& cells : held_back_) {
        WriteLine(cells, std::exchange(heading, false) && style_.with_colours);
    }
    held_back_.clear();
    flowing_ = true;
}

void TableWriter::WriteLine(const std::vector<std::string>& cells, bool bold) const {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += cells[i];
        if (i + 1 < cells.size()) {
            const std::size_t width = DisplayWidth(cells[i]);
            line.append(widths_[i] - std::min(widths_[i], width), ' ');
            line += kGap;
        }
    }
    if (style_.width > 0) {
        line = CutToWidth(line, style_.width);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out_ << (bold ? kBold : "") << line << (bold ? kPlain : "") << '\n';
}

}  // namespace serverlog::program
