#include "record/column_exchange.h"

#include <mailserver-log/utils/error_line.h>

#include <typeinfo>

#include "utils/json_text.h"

namespace serverlog::record::internal {

namespace {

void ParseColumn(const std::string& text, Json::Value& value) {
    if (!utils::ParseJsonText(text, value)) {
        // The one JSON column that there is gave the line its words.
        SERVERLOG_ERROR_LINE("json parse webapi param fail: %s", text.c_str());
    }
}

void Check(int result) {
    if (result != SQLITE_OK) {
        throw soci::soci_error(std::string("Cannot bind a value: ") +
                               sqlite_api::sqlite3_errstr(result));
    }
}

void BindText(StatementRow& row, const ExchangedColumn& column, const std::string& value,
              sqlite_api::sqlite3_destructor_type keeping) {
    if (const int parameter = row.ParameterAt(column.index, column.name); parameter != 0) {
        Check(sqlite_api::sqlite3_bind_text(row.Statement(), parameter, value.c_str(),
                                            static_cast<int>(value.size()), keeping));
    }
}

}  // namespace

void RefuseType() {
    throw std::bad_cast();
}

void RefuseNull() {
    throw soci::soci_error("Null value not allowed for this type");  // SOCI's words
}

void ReadColumn(const soci::values& row, const ExchangedColumn& column, std::int32_t& value) {
    value = row.get<int>(column.name);
}

void ReadColumn(const soci::values& row, const ExchangedColumn& column, std::uint64_t& value) {
    value = static_cast<std::uint64_t>(row.get<long long>(column.name));
}

void ReadColumn(const soci::values& row, const ExchangedColumn& column, std::string& value) {
    value = column.null_text == NullText::Empty ? row.get<std::string>(column.name, std::string())
                                                : row.get<std::string>(column.name);
}

void ReadColumn(const soci::values& row, const ExchangedColumn& column, Json::Value& value) {
    std::string text;
    ReadColumn(row, column, text);
    ParseColumn(text, value);
}

void ReadColumn(const StatementRow& row, const ExchangedColumn& column, Json::Value& value) {
    std::string text;  // the parser wants one
    ReadColumn(row, column, text);
    ParseColumn(text, value);
}

void WriteColumn(soci::values& row, const ExchangedColumn& column, std::int32_t value) {
    row.set(column.name, static_cast<int>(value));
}

void WriteColumn(soci::values& row, const ExchangedColumn& column, std::uint64_t value) {
    row.set(column.name, static_cast<long long>(value));
}

void WriteColumn(soci::values& row, const ExchangedColumn& column, const std::string& value) {
    row.set(column.name, value);
}

void WriteColumn(soci::values& row, const ExchangedColumn& column, const Json::Value& value) {
    row.set(column.name, utils::ToJsonText(value));
}

void WriteColumn(StatementRow& row, const ExchangedColumn& column, std::int32_t value) {
    if (const int parameter = row.ParameterAt(column.index, column.name); parameter != 0) {
        Check(sqlite_api::sqlite3_bind_int(row.Statement(), parameter, value));
    }
}

void WriteColumn(StatementRow& row, const ExchangedColumn& column, std::uint64_t value) {
    if (const int parameter = row.ParameterAt(column.index, column.name); parameter != 0) {
        Check(sqlite_api::sqlite3_bind_int64(row.Statement(), parameter,
                                             static_cast<std::int64_t>(value)));
    }
}

// SQLite's own names for the two ways of keeping a text, SQLITE_STATIC and SQLITE_TRANSIENT, are
// casts to a type outside of the namespace that it is in here.

void WriteColumn(StatementRow& row, const ExchangedColumn& column, const std::string& value) {
    BindText(row, column, value, nullptr);
}

void WriteColumn(StatementRow& row, const ExchangedColumn& column, const Json::Value& value) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): SQLite's number for "make a copy of the text".
    const auto copied = reinterpret_cast<sqlite_api::sqlite3_destructor_type>(-1);
    BindText(row, column, utils::ToJsonText(value), copied);
}

}  // namespace serverlog::record::internal
