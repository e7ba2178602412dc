#pragma once

#include <json/json.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <tuple>
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

    /// Writes the object that record::ToJson makes of a record, without making it, which would
    /// take most of the time.
    template <class Record>
    void WriteRecord(const Record& record);

    /// To be called once, behind the last value.
    void Finish();

 private:
    void WriteText(std::string_view text);

    std::ostream& out_;
    Form form_;
    bool empty_ = true;
    std::string text_;
};

/// Adds a value of a record as JSON text.
void AppendJson(std::string& out, std::int32_t value);
void AppendJson(std::string& out, std::uint64_t value);
void AppendJson(std::string& out, const std::string& value);
void AppendJson(std::string& out, const Json::Value& value);

namespace internal {

/// A member of a record's JSON object.
template <class Record>
struct JsonMember {
    std::string_view name;
    void (*append)(std::string& out, const Record& record);
};

template <class Record, std::size_t... Index>
std::vector<JsonMember<Record>> JsonMembers(std::index_sequence<Index...> /*columns*/) {
    std::vector<JsonMember<Record>> members = {
        {std::get<Index>(Record::Columns()).name, [](std::string& out, const Record& record) {
             AppendJson(out, record.*std::get<Index>(Record::Columns()).member);
         }}...};
    // As JSON values keep their members.
    std::sort(members.begin(), members.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    return members;
}

}  // namespace internal

template <class Record>
void JsonWriter::WriteRecord(const Record& record) {
    using Columns = decltype(Record::Columns());
    static const auto members =
        internal::JsonMembers<Record>(std::make_index_sequence<std::tuple_size_v<Columns>>());
    text_.clear();
    char separator = '{';
    for (const auto& member : members) {
        text_ += separator;
        separator = ',';
        text_ += '"';
        text_ += member.name;  // nothing in a column's name needs an escape
        text_ += "\":";
        member.append(text_, record);
    }
    text_ += '}';
    WriteText(text_);
}

}  // namespace serverlog::program
