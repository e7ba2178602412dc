#pragma once

#include <json/json.h>
#include <mailserver-log/export.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// What follows from a record's one list of columns.
///
/// A record R has `static constexpr auto Columns()`, a tuple of Column in the order of an insert,
/// and `static constexpr NullText kNullText`. Everything that walks over a record's columns walks
/// over that list.
namespace serverlog::record {

/// What a NULL in a text column means when a row is read; in any other it is refused.
enum class NullText { Refused, Empty };

/// One column: its name in the table, in JSON and in headings, and the member that holds its value.
template <class Record, class Value>
struct Column {
    const char* name;       ///< a literal
    Value Record::*member;  ///< a number, text or JSON value
};

/// Lets Column{"date", &MailLog::date} do without template arguments.
template <class Record, class Value>
Column(const char*, Value Record::*) -> Column<Record, Value>;

/// Calls `visit(column)` for each column of Record, in order.
template <class Record, class Visit>
void ForEachColumn(Visit&& visit) {
    std::apply([&visit](const auto&... column) { (visit(column), ...); }, Record::Columns());
}

namespace internal {

template <class Record, class Visit, std::size_t... Index>
constexpr void ForEachColumnAt(Visit& visit, std::index_sequence<Index...> /*columns*/) {
    (visit(std::integral_constant<std::size_t, Index>(), std::get<Index>(Record::Columns())), ...);
}

}  // namespace internal

/// How many columns Record has.
template <class Record>
inline constexpr std::size_t kColumnCount = std::tuple_size_v<decltype(Record::Columns())>;

/// Calls `visit(index, column)` for each column of Record, in order. The index counts from 0 and is
/// a std::integral_constant, so that a tuple can be asked for the value of that column.
template <class Record, class Visit>
constexpr void ForEachIndexedColumn(Visit visit) {
    internal::ForEachColumnAt<Record>(visit, std::make_index_sequence<kColumnCount<Record>>());
}

/// The names of Record's columns, in order.
template <class Record>
std::vector<std::string> ColumnNames() {
    std::vector<std::string> names;
    ForEachColumn<Record>([&names](const auto& column) { names.emplace_back(column.name); });
    return names;
}

/// Whether two records agree in every column.
template <class Record>
bool EqualColumns(const Record& a, const Record& b) {
    return std::apply(
        [&a, &b](const auto&... column) { return ((a.*column.member == b.*column.member) && ...); },
        Record::Columns());
}

/// A JSON value that is no record. what() is a sentence that names the column.
class MAILSERVER_LOG_EXPORT ColumnError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

namespace internal {

/// A column's value from a JSON value of the fitting type and range.
/// Throws ColumnError, naming the column, for any other.
MAILSERVER_LOG_EXPORT void ReadJson(const char* name, const Json::Value& json, std::int32_t& value);
MAILSERVER_LOG_EXPORT void ReadJson(const char* name, const Json::Value& json,
                                    std::uint64_t& value);
MAILSERVER_LOG_EXPORT void ReadJson(const char* name, const Json::Value& json, std::string& value);
MAILSERVER_LOG_EXPORT void ReadJson(const char* name, const Json::Value& json, Json::Value& value);

/// A column's value as JSON.
MAILSERVER_LOG_EXPORT Json::Value WriteJson(std::int32_t value);
MAILSERVER_LOG_EXPORT Json::Value WriteJson(std::uint64_t value);
MAILSERVER_LOG_EXPORT Json::Value WriteJson(const std::string& value);
MAILSERVER_LOG_EXPORT Json::Value WriteJson(const Json::Value& value);

/// A column's value as text: numbers in decimal, JSON on one line.
MAILSERVER_LOG_EXPORT std::string WriteText(std::int32_t value);
MAILSERVER_LOG_EXPORT std::string WriteText(std::uint64_t value);
MAILSERVER_LOG_EXPORT std::string WriteText(const std::string& value);
MAILSERVER_LOG_EXPORT std::string WriteText(const Json::Value& value);

/// Throws ColumnError unless `json` is an object that has no member but the names given.
MAILSERVER_LOG_EXPORT void CheckMembers(const Json::Value& json,
                                        const std::vector<std::string>& names);

}  // namespace internal

/// A record as a JSON object with one member a column, named after it.
template <class Record>
Json::Value ToJson(const Record& record) {
    Json::Value json(Json::objectValue);
    ForEachColumn<Record>([&json, &record](const auto& column) {
        json[column.name] = internal::WriteJson(record.*column.member);
    });
    return json;
}

/// The record of a JSON object whose members are named after the columns. A column without a member
/// keeps the record's default.
///
/// Throws ColumnError, whose text is fit for a person, if `json` is no object, has a member that is
/// no column, or one whose value has the wrong type or lies outside the column's range.
template <class Record>
Record FromJson(const Json::Value& json) {
    internal::CheckMembers(json, ColumnNames<Record>());
    Record record;
    ForEachColumn<Record>([&json, &record](const auto& column) {
        if (json.isMember(column.name)) {
            internal::ReadJson(column.name, json[column.name], record.*column.member);
        }
    });
    return record;
}

/// A record's values as texts, one a column, in order: the cells of a table or of a CSV line, not
/// yet quoted or escaped for either.
template <class Record>
std::vector<std::string> ToCells(const Record& record) {
    std::vector<std::string> cells;
    ForEachColumn<Record>([&cells, &record](const auto& column) {
        cells.push_back(internal::WriteText(record.*column.member));
    });
    return cells;
}

}  // namespace serverlog::record
