#pragma once

#include <json/value.h>
#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/utils/text_buffer.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace serverlog::webapi::internal {

/// The parsed text files that a document takes its words from; null or missing texts are empty
/// words.
struct ExportTexts {
    Json::Value product;
    Json::Value system;
};

/// Names a text of these files.
struct TextKey {
    const char* section;
    const char* key;
    bool is_system_text = false;
};

/// One column of a document: its heading, and what stands around the value of each cell.
struct ExportColumn {
    TextKey label;
    std::string_view cell_begin;
    std::string_view cell_end;
    /// Follows the heading without a blank, if it has a key.
    TextKey second_label = {nullptr, nullptr};
};

/// What a log's document looks like.
struct ExportLayout {
    const char* content_type;  ///< the HTTP header with its line end
    const char* file_name;
    TextKey title;
    /// Whether the client gets each row as it is found, instead of when a buffer is full.
    bool flushes_rows;
    const ExportColumn* columns;
    std::size_t column_count;
};

/// An HTML document, with the HTTP headers before it, on its way to standard output.
///
/// All functions throw std::system_error when standard output does not take what they write, such
/// as with EPIPE when the client has gone; what is written stays written.
class ExportDocument {
 public:
    /// Both parameters must outlive this object.
    ExportDocument(const ExportLayout& layout, const ExportTexts& texts);

    /// Writes all that stands before the rows.
    void Begin();

    /// Adds the next cell of a row, written as it is.
    void Cell(std::string_view value) {
        row_.Append(frames_[cells_++]);
        row_.Append(value);
    }

    /// Adds the next cell, with HtmlStrEscape.
    void EscapedCell(std::string_view value);

    /// Writes the row of as many cells as there are columns.
    void EndRow();

    /// Writes all that stands behind the rows, and flushes.
    void End();

 private:
    void HandOn(std::string_view row);
    std::string Text(const TextKey& key) const;
    std::string Heading(const ExportColumn& column) const;

    const ExportLayout& layout_;
    const ExportTexts& texts_;
    // What stands before the value of each cell and, at the end, behind the last one: so a row of
    // ten cells is put together from 21 pieces and not from 32.
    std::vector<std::string> frames_;
    // One write a row, and no memory of its own for any cell.
    utils::TextBuffer row_;
    std::size_t cells_ = 0;
    int descriptor_ = -1;  // of standard output, once its buffer has been flushed
};

/// Writes the document of all rows of a query.
///
/// @param query      not yet run
/// @param row        what the query fetches into, a record or a view of the row
/// @param write_row  writes the cells of a row, write_row(row, document)
///
/// Throws soci::soci_error if the query can't be run, which is behind the headings, and as
/// ExportDocument does.
template <class Row, class WriteRow>
void WriteExport(const ExportLayout& layout, const ExportTexts& texts,
                 db::UnionAllSelectQuery& query, const Row& row, WriteRow write_row) {
    ExportDocument document(layout, texts);
    document.Begin();
    query.ExecuteWithoutPreFetch();
    while (query.Fetch()) {
        write_row(row, document);
        document.EndRow();
    }
    document.End();
}

}  // namespace serverlog::webapi::internal
