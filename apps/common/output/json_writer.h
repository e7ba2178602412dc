#pragma once

#include <json/json.h>
#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/row_view.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace serverlog::program {

/// A JSON value in UTF-8 without blanks and line ends. Bytes in its texts that are no UTF-8 become
/// U+FFFD.
std::string CompactJson(const Json::Value& value);

/// Writes JSON values as CompactJson, one a line: as NDJSON, or as the elements of one array.
class JsonWriter {
 public:
    enum class Form { kLines, kArray };

    /// @param out  must outlive this object
    JsonWriter(std::ostream& out, Form form) : out_(out), form_(form) {}

    void Write(const Json::Value& value);

    /// Writes the object that record::ToJson makes of a row's record, without making it, which
    /// would take most of the time.
    template <class Record>
    void WriteRow(const record::RowView<Record>& row);

    /// To be called once, behind the last value.
    void Finish();

 private:
    void WriteText();

    std::ostream& out_;
    Form form_;
    bool empty_ = true;
    std::string text_;  // of the present value
};

/// Adds a value of a record as JSON text.
void AppendJson(std::string& out, std::int32_t value);
void AppendJson(std::string& out, std::uint64_t value);
void AppendJson(std::string& out, std::string_view value);
void AppendJson(std::string& out, const Json::Value& value);

namespace internal {

/// The indices of a record's columns in the order of their names, as JSON values keep members.
template <class Record>
constexpr auto ColumnsByName() {
    constexpr std::size_t kCount = record::kColumnCount<Record>;
    std::array<std::string_view, kCount> names = {};
    std::array<std::size_t, kCount> order = {};
    record::ForEachIndexedColumn<Record>([&](auto index, const auto& column) {
        names[index] = column.name;
        std::size_t place = index;
        for (; place > 0 && names[order[place - 1]] > names[index]; --place) {
            order[place] = order[place - 1];
        }
        order[place] = index;
    });
    return order;
}

/// What stands in front of a member's value, such as {"date": or ,"host": in that order.
template <class Record>
std::vector<std::string> MemberBeginnings() {
    const std::vector<std::string> names = record::ColumnNames<Record>();
    std::vector<std::string> beginnings;
    for (const std::size_t column : ColumnsByName<Record>()) {
        // Nothing in a column's name needs an escape.
        beginnings.push_back((beginnings.empty() ? "{\"" : ",\"") + names[column] + "\":");
    }
    return beginnings;
}

template <class Record, std::size_t... Place>
void AppendMembers(std::string& out, const record::RowView<Record>& row,
                   std::index_sequence<Place...> /*members*/) {
    static const std::vector<std::string> beginnings = MemberBeginnings<Record>();
    constexpr auto kOrder = ColumnsByName<Record>();
    ((out += beginnings[Place], AppendJson(out, row.template Get<kOrder[Place]>())), ...);
}

}  // namespace internal

template <class Record>
void JsonWriter::WriteRow(const record::RowView<Record>& row) {
    text_.clear();
    internal::AppendMembers(text_, row, std::make_index_sequence<record::kColumnCount<Record>>());
    text_ += '}';
    WriteText();
}

}  // namespace serverlog::program
