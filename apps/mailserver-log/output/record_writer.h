#pragma once

#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/row_view.h>

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "listing/list_view.h"
#include "listing/named_cells.h"
#include "output/csv_writer.h"
#include "output/json_writer.h"
#include "output/table_writer.h"

namespace serverlog::program {

/// Writes the rows of a store one by one in some format. A record is written as well: it becomes a
/// view of itself.
template <class Store>
class RecordWriter {
 public:
    using Row = record::RowView<typename Store::Record>;

    virtual ~RecordWriter() = default;
    virtual void Write(const Row& row) = 0;

    /// Hands on what is held back, when no record may come for a while.
    virtual void Flush() {}

    /// To be called once, behind the last record.
    virtual void Finish() {}
};

/// JSON with the values as they are stored, so that lines of it can be loaded again.
template <class Store>
class JsonRecordWriter : public RecordWriter<Store> {
 public:
    JsonRecordWriter(std::ostream& out, JsonWriter::Form form) : json_(out, form) {}
    void Write(const typename RecordWriter<Store>::Row& row) override { json_.WriteRow(row); }
    void Finish() override { json_.Finish(); }

 private:
    JsonWriter json_;
};

/// CSV with all columns, headed by their names.
template <class Store>
class CsvRecordWriter : public RecordWriter<Store> {
 public:
    explicit CsvRecordWriter(std::ostream& out) : csv_(out) {
        csv_.Write(record::ColumnNames<typename Store::Record>());
    }
    void Write(const typename RecordWriter<Store>::Row& row) override {
        cells_.ForEach(row, [this](std::string_view cell) { csv_.Add(cell); });
        csv_.EndRow();
    }

 private:
    CsvWriter csv_;
    ReadableCells<typename Store::Record> cells_;
};

/// A table of the columns that matter to a person.
template <class Store>
class TableRecordWriter : public RecordWriter<Store> {
 public:
    TableRecordWriter(std::ostream& out, TableWriter::Style style)
        : table_(out, Headings(), style), cells_(Columns()) {}
    void Write(const typename RecordWriter<Store>::Row& row) override {
        table_.Write(cells_.Of(row));
    }
    void Flush() override { table_.Flush(); }
    void Finish() override { table_.Finish(); }

 private:
    static std::vector<std::string> Headings() {
        std::vector<std::string> headings;
        for (const TableColumn& column : TableColumns(Store())) {
            headings.emplace_back(column.heading);
        }
        return headings;
    }

    static std::vector<const char*> Columns() {
        std::vector<const char*> columns;
        for (const TableColumn& column : TableColumns(Store())) {
            columns.push_back(column.column);
        }
        return columns;
    }

    TableWriter table_;
    NamedCells<Store> cells_;
};

/// A writer of the format that "table", "json", "ndjson" or "csv" names.
///
/// @param out    must outlive the result
/// @param style  what a table looks like
template <class Store>
std::unique_ptr<RecordWriter<Store>> MakeRecordWriter(const std::string& format, std::ostream& out,
                                                      TableWriter::Style style = {}) {
    if (format == "json") {
        return std::make_unique<JsonRecordWriter<Store>>(out, JsonWriter::Form::kArray);
    }
    if (format == "ndjson") {
        return std::make_unique<JsonRecordWriter<Store>>(out, JsonWriter::Form::kLines);
    }
    if (format == "csv") {
        return std::make_unique<CsvRecordWriter<Store>>(out);
    }
    return std::make_unique<TableRecordWriter<Store>>(out, style);
}

}  // namespace serverlog::program
