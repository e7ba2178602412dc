#include "webapi/export_document.h"

#include <mailserver-log/utils/byte_block.h>
#include <mailserver/html_escape.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>
#include <utility>

namespace serverlog::webapi::internal {

namespace {

[[noreturn]] void ThrowWriteError() {
    throw std::system_error(errno, std::generic_category(), "standard output");
}

void Write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
        ThrowWriteError();
    }
}

void Flush() {
    if (std::fflush(stdout) != 0) {
        ThrowWriteError();
    }
}

std::vector<std::string> Frames(const ExportLayout& layout) {
    std::vector<std::string> frames;
    std::string frame = "<tr>\n";
    for (std::size_t i = 0; i < layout.column_count; ++i) {
        frame += layout.columns[i].cell_begin;
        frames.push_back(std::move(frame));
        frame = layout.columns[i].cell_end;
    }
    frames.push_back(frame + "</tr>\n");
    return frames;
}

}  // namespace

ExportDocument::ExportDocument(const ExportLayout& layout, const ExportTexts& texts)
    : layout_(layout), texts_(texts), frames_(Frames(layout)) {}

void ExportDocument::Begin() {
    const std::string title = Text(layout_.title);
    Write(layout_.content_type);
    Write(std::string("Content-Disposition:attachment; filename=\"") + layout_.file_name +
          "\"\n\n");
    Write("<html><head>\n");
    Write("<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8;\">\n");
    Write("<title>" + title + "</title>\n");
    Write("</head>\n");
    Write("<body>\n");
    Write("<center><h2> " + title + " </h2></center>\n");
    Write("<table border=1 width=95%>\n");
    Write("<tr>\n");
    for (std::size_t i = 0; i < layout_.column_count; ++i) {
        Write("<th>" + Heading(layout_.columns[i]) + "</th>");
    }
    Write("</tr>\n");
}

void ExportDocument::EscapedCell(std::string_view value) {
    // Most texts have nothing to escape: a look costs less than a copy.
    const bool has_markup = utils::HasMarked(value, [](const utils::ByteBlock& bytes) {
        return bytes.Equal('&') | bytes.Equal('<') | bytes.Equal('>') | bytes.Equal('"') |
               bytes.Equal('\'');
    });
    if (has_markup) {
        Cell(HtmlStrEscape(std::string(value)));
    } else {
        Cell(value);
    }
}

void ExportDocument::EndRow() {
    row_.Append(frames_[cells_]);
    if (layout_.flushes_rows) {
        HandOn(row_.Text());
    } else {
        Write(row_.Text());
    }
    row_.Clear();
    cells_ = 0;
}

// Into the buffer of standard output, which is empty, and out of it again takes a quarter of the
// time that it takes to write a row: 75 ns. What the descriptor does not take is left to the
// buffer, and so are the errors, which others look for there. A stream without a descriptor may
// stand in the place of standard output.
void ExportDocument::HandOn(std::string_view row) {
    if (descriptor_ >= 0) {
        const ssize_t taken = write(descriptor_, row.data(), row.size());
        row.remove_prefix(taken > 0 ? static_cast<std::size_t>(taken) : 0);
    }
    if (!row.empty()) {
        Write(row);
        Flush();
        descriptor_ = fileno(stdout);
    }
}

void ExportDocument::End() {
    Write("</table></body></html>\n");
    Flush();
}

std::string ExportDocument::Text(const TextKey& key) const {
    const Json::Value& texts = key.is_system_text ? texts_.system : texts_.product;
    return texts[key.section][key.key].asString();
}

std::string ExportDocument::Heading(const ExportColumn& column) const {
    return column.second_label.key == nullptr ? Text(column.label)
                                              : Text(column.label) + Text(column.second_label);
}

}  // namespace serverlog::webapi::internal
