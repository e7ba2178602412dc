#include "record/column_exchange.h"

#include <mailserver-log/utils/error_line.h>

#include "utils/json_text.h"

namespace serverlog::record::internal {

namespace {

void ParseColumn(const std::string& text, Json::Value& value) {
    if (!utils::ParseJsonText(text, value)) {
        // The one JSON column that there is gave the line its words.
        SERVERLOG_ERROR_LINE("json parse webapi param fail: %s", text.c_str());
    }
}

void RefuseNull(bool has_value) {
    if (!has_value) {
        // SOCI's words.
        throw soci::soci_error("Null value not allowed for this type");
    }
}

}  // namespace

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

void ReadColumn(const StatementRow& row, const ExchangedColumn& column, std::int32_t& value) {
    RefuseNull(row.Read(column.index, column.name, value));
}

void ReadColumn(const StatementRow& row, const ExchangedColumn& column, std::uint64_t& value) {
    std::int64_t stored = 0;
    RefuseNull(row.Read(column.index, column.name, stored));
    value = static_cast<std::uint64_t>(stored);
}

void ReadColumn(const StatementRow& row, const ExchangedColumn& column, std::string& value) {
    const bool may_be_null = column.null_text == NullText::Empty;
    // Where a NULL is taken its declared type is not asked for, on purpose: SOCI doesn't either.
    const bool is_untyped_null = may_be_null && !row.IsText(column.index, column.name) &&
                                 row.IsNull(column.index, column.name);
    if (is_untyped_null || !row.Read(column.index, column.name, value)) {
        RefuseNull(may_be_null);
        value.clear();
    }
}

void ReadColumn(const StatementRow& row, const ExchangedColumn& column, Json::Value& value) {
    std::string text;
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
    row.Bind(column.index, column.name, value);
}

void WriteColumn(StatementRow& row, const ExchangedColumn& column, std::uint64_t value) {
    row.Bind(column.index, column.name, static_cast<std::int64_t>(value));
}

void WriteColumn(StatementRow& row, const ExchangedColumn& column, const std::string& value) {
    row.Bind(column.index, column.name, value);
}

void WriteColumn(StatementRow& row, const ExchangedColumn& column, const Json::Value& value) {
    row.BindCopy(column.index, column.name, utils::ToJsonText(value));
}

}  // namespace serverlog::record::internal
