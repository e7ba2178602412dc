#pragma once

#include <json/json.h>
#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/row_view.h>
#include <mailserver-log/utils/json_string.h>
#include <mailserver-log/utils/text_buffer.h>

#include <array>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

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
    utils::TextBuffer text_;  // of the present value
};

namespace internal {

///@{
/// Adds a value of a record as JSON text, a text without its quotes.
template <class Number>
void AppendJson(utils::TextBuffer& out, Number value) {
    out.AppendNumber(value);
}
inline void AppendJson(utils::TextBuffer& out, std::string_view value) {
    utils::AppendJsonCharacters(out, value);
}
inline void AppendJson(utils::TextBuffer& out, const Json::Value& value) {
    out.Append(CompactJson(value));
}
///@}

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

/// A short text that the compiler puts together, so that adding it costs two moves of the
/// processor.
class Piece {
 public:
    constexpr void Add(std::string_view text) {
        for (const char c : text) {
            text_[size_++] = c;
        }
    }
    constexpr std::string_view Text() const { return {text_, size_}; }

 private:
    char text_[32] = {};
    std::size_t size_ = 0;
};

/// What stands in front of each value, in that order, and at the end behind the last one: {"date":
/// or ,"host":" with the quotes of the texts.
template <class Record>
constexpr auto ObjectPieces() {
    constexpr std::size_t kCount = record::kColumnCount<Record>;
    std::array<std::string_view, kCount> names = {};
    std::array<bool, kCount> is_text = {};
    record::ForEachIndexedColumn<Record>([&](auto index, const auto& column) {
        names[index] = column.name;
        is_text[index] = std::is_same_v<decltype(column.member), std::string Record::*>;
    });
    std::array<Piece, kCount + 1> pieces = {};
    std::size_t place = 0;
    pieces[0].Add("{");
    for (const std::size_t column : ColumnsByName<Record>()) {
        // Nothing in a column's name needs an escape.
        pieces[place].Add("\"");
        pieces[place].Add(names[column]);
        pieces[place].Add(is_text[column] ? "\":\"" : "\":");
        pieces[++place].Add(is_text[column] ? "\"" : "");
        pieces[place].Add(place < kCount ? "," : "}");
    }
    return pieces;
}

template <class Record, std::size_t... Place>
void AppendObject(utils::TextBuffer& out, const record::RowView<Record>& row,
                  std::index_sequence<Place...> /*members*/) {
    static constexpr auto kOrder = ColumnsByName<Record>();
    static constexpr auto kPieces = ObjectPieces<Record>();
    ((out.Append(kPieces[Place].Text()), AppendJson(out, row.template Get<kOrder[Place]>())), ...);
    out.Append(kPieces.back().Text());
}

}  // namespace internal

template <class Record>
void JsonWriter::WriteRow(const record::RowView<Record>& row) {
    text_.Clear();
    internal::AppendObject(text_, row, std::make_index_sequence<record::kColumnCount<Record>>());
    WriteText();
}

}  // namespace serverlog::program
