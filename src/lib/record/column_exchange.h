#pragma once

#include <json/json.h>
#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/row_view.h>
#include <mailserver-log/record/statement_row.h>
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace serverlog::record {

namespace internal {

/// One of a record's columns on the way between a record and a statement.
struct ExchangedColumn {
    std::size_t index;  ///< counted from 0, in the order of the record's list
    const char* name;
    NullText null_text;
};

// A column is taken as the one type that its declared type stands for (INTEGER: int, BIGINT: long
// long, TEXT: string), and std::bad_cast for any other. The numbers of 64 bits are stored with the
// same bits but a sign, the only form that SQLite has. A row is a StatementRow, or soci::values for
// callers who call a record's virtual operations themselves.

void ReadColumn(const soci::values& row, const ExchangedColumn& column, std::int32_t& value);
void ReadColumn(const soci::values& row, const ExchangedColumn& column, std::uint64_t& value);
void ReadColumn(const soci::values& row, const ExchangedColumn& column, std::string& value);
void ReadColumn(const soci::values& row, const ExchangedColumn& column, Json::Value& value);

void WriteColumn(soci::values& row, const ExchangedColumn& column, std::int32_t value);
void WriteColumn(soci::values& row, const ExchangedColumn& column, std::uint64_t value);
void WriteColumn(soci::values& row, const ExchangedColumn& column, const std::string& value);
void WriteColumn(soci::values& row, const ExchangedColumn& column, const Json::Value& value);

[[noreturn]] void RefuseType();
[[noreturn]] void RefuseNull();

/// Whether a value is NULL. NULL reads as 0 and as no text: only then it has to be asked for, which
/// costs a call a column.
inline bool IsNull(const StatementRow& row, const StatementRow::Place& place) {
    return sqlite_api::sqlite3_column_type(row.Statement(), place.column) == SQLITE_NULL;
}

// Those of a StatementRow stand here to be part of the loop over the columns, so that a value costs
// one look at its place and the calls of SQLite.

inline void ReadColumn(const StatementRow& row, const ExchangedColumn& column,
                       std::int32_t& value) {
    const StatementRow::Place place = row.ColumnAt(column.index, column.name);
    if (place.type != soci::dt_integer) {
        RefuseType();
    }
    const int read = sqlite_api::sqlite3_column_int(row.Statement(), place.column);
    if (read == 0 && IsNull(row, place)) {
        RefuseNull();
    }
    value = read;
}

inline void ReadColumn(const StatementRow& row, const ExchangedColumn& column,
                       std::uint64_t& value) {
    const StatementRow::Place place = row.ColumnAt(column.index, column.name);
    if (place.type != soci::dt_long_long) {
        RefuseType();
    }
    const std::int64_t read = sqlite_api::sqlite3_column_int64(row.Statement(), place.column);
    if (read == 0 && IsNull(row, place)) {
        RefuseNull();
    }
    value = static_cast<std::uint64_t>(read);
}

/// The text stays where it is, until the next row is fetched.
inline void ReadColumn(const StatementRow& row, const ExchangedColumn& column,
                       std::string_view& value) {
    const StatementRow::Place place = row.ColumnAt(column.index, column.name);
    const bool may_be_null = column.null_text == NullText::Empty;
    if (place.type != soci::dt_string && place.type != soci::dt_blob) {  // SOCI's two for texts
        // Where a NULL is taken its declared type is not asked for, on purpose: SOCI doesn't
        // either.
        if (!may_be_null || !IsNull(row, place)) {
            RefuseType();
        }
        value = {};
        return;
    }
    // The value is asked for its text and its size: asking the statement for each would make it
    // find, lock and check twice, a third of the instructions of reading. SQLite wants that the
    // statement is in use by one thread at a time, and so it is.
    auto* const column_value = sqlite_api::sqlite3_column_value(row.Statement(), place.column);
    const auto* text = sqlite_api::sqlite3_value_text(column_value);
    if (text == nullptr) {
        if (!may_be_null && IsNull(row, place)) {
            RefuseNull();
        }
        value = {};  // NULL, an empty blob, or no memory left for another form of the value
        return;
    }
    const int size = sqlite_api::sqlite3_value_bytes(column_value);
    value = {reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)};
}

/// Texts go into strings that keep their memory from row to row.
inline void ReadColumn(const StatementRow& row, const ExchangedColumn& column, std::string& value) {
    std::string_view text;
    ReadColumn(row, column, text);
    value.assign(text);
}

void ReadColumn(const StatementRow& row, const ExchangedColumn& column, Json::Value& value);

// Bind a value to the parameter of the column's name, if the statement has one. soci::soci_error
// when SQLite does not take it. A text must stay until the statement has run.

void WriteColumn(StatementRow& row, const ExchangedColumn& column, std::int32_t value);
void WriteColumn(StatementRow& row, const ExchangedColumn& column, std::uint64_t value);
void WriteColumn(StatementRow& row, const ExchangedColumn& column, const std::string& value);
void WriteColumn(StatementRow& row, const ExchangedColumn& column, const Json::Value& value);

/// Calls `exchange(column, member)` for each column of the record's list.
template <class Record, class Exchange>
void ExchangeColumns(Exchange exchange) {
    ForEachIndexedColumn<Record>([&](auto index, const auto& column) {
        exchange(ExchangedColumn{index, column.name, Record::kNullText}, column.member);
    });
}

}  // namespace internal

/// Takes all columns of a record from a fetched row. Throws as BaseRecord::soci_FromBase does.
template <class Row, class Record>
void ReadColumns(const Row& row, Record& record) {
    internal::ExchangeColumns<Record>([&](const internal::ExchangedColumn& column, auto member) {
        internal::ReadColumn(row, column, record.*member);
    });
}

/// Gives all columns of a record to a statement.
template <class Row, class Record>
void WriteColumns(const Record& record, Row& row) {
    internal::ExchangeColumns<Record>([&](const internal::ExchangedColumn& column, auto member) {
        internal::WriteColumn(row, column, record.*member);
    });
}

template <class Record>
void RowView<Record>::ReadFrom(const StatementRow& row) {
    ForEachIndexedColumn<Record>([&](auto index, const auto& column) {
        internal::ReadColumn(row, {index, column.name, Record::kNullText},
                             std::get<decltype(index)::value>(values_));
    });
}

}  // namespace serverlog::record
