#pragma once

#include <json/json.h>
#include <mailserver-log/record/columns.h>
#include <soci/soci.h>

#include <cstdint>
#include <string>

namespace serverlog::record {

/// What a NULL in a text column means when a row is read.
enum class NullText { Refused, Empty };

namespace internal {

// SOCI gives a column as the one type that its declared type stands for (INTEGER: int, BIGINT: long
// long, TEXT: string), and std::bad_cast for any other. The numbers of 64 bits are stored with the
// same bits but a sign, the only form that SQLite has.

void ReadColumn(const soci::values& values, const char* name, NullText null_text,
                std::int32_t& value);
void ReadColumn(const soci::values& values, const char* name, NullText null_text,
                std::uint64_t& value);
void ReadColumn(const soci::values& values, const char* name, NullText null_text,
                std::string& value);
void ReadColumn(const soci::values& values, const char* name, NullText null_text,
                Json::Value& value);

void WriteColumn(soci::values& values, const char* name, std::int32_t value);
void WriteColumn(soci::values& values, const char* name, std::uint64_t value);
void WriteColumn(soci::values& values, const char* name, const std::string& value);
void WriteColumn(soci::values& values, const char* name, const Json::Value& value);

}  // namespace internal

/// Takes all columns of a record from a fetched row. Throws as BaseRecord::soci_FromBase does.
template <class Record>
void ReadColumns(const soci::values& values, NullText null_text, Record& record) {
    ForEachColumn<Record>([&](const auto& column) {
        internal::ReadColumn(values, column.name, null_text, record.*column.member);
    });
}

/// Puts all columns of a record into the values of a statement.
template <class Record>
void WriteColumns(const Record& record, soci::values& values, soci::indicator& indicator) {
    ForEachColumn<Record>([&](const auto& column) {
        internal::WriteColumn(values, column.name, record.*column.member);
    });
    indicator = soci::i_ok;
}

}  // namespace serverlog::record
