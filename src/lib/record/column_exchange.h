#pragma once

#include <json/json.h>
#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/statement_row.h>
#include <soci/soci.h>

#include <cstddef>
#include <cstdint>
#include <string>

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

void ReadColumn(const StatementRow& row, const ExchangedColumn& column, std::int32_t& value);
void ReadColumn(const StatementRow& row, const ExchangedColumn& column, std::uint64_t& value);
void ReadColumn(const StatementRow& row, const ExchangedColumn& column, std::string& value);
void ReadColumn(const StatementRow& row, const ExchangedColumn& column, Json::Value& value);

void WriteColumn(soci::values& row, const ExchangedColumn& column, std::int32_t value);
void WriteColumn(soci::values& row, const ExchangedColumn& column, std::uint64_t value);
void WriteColumn(soci::values& row, const ExchangedColumn& column, const std::string& value);
void WriteColumn(soci::values& row, const ExchangedColumn& column, const Json::Value& value);

void WriteColumn(StatementRow& row, const ExchangedColumn& column, std::int32_t value);
void WriteColumn(StatementRow& row, const ExchangedColumn& column, std::uint64_t value);
void WriteColumn(StatementRow& row, const ExchangedColumn& column, const std::string& value);
void WriteColumn(StatementRow& row, const ExchangedColumn& column, const Json::Value& value);

/// Calls `exchange(column, member)` for each column of the record's list.
template <class Record, class Exchange>
void ExchangeColumns(Exchange exchange) {
    std::size_t index = 0;
    ForEachColumn<Record>([&](const auto& column) {
        exchange(ExchangedColumn{index++, column.name, Record::kNullText}, column.member);
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

}  // namespace serverlog::record
