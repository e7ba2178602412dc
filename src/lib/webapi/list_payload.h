#pragma once

#include <json/value.h>
#include <mailserver-log/utils/json_string.h>
#include <mailserver-log/utils/text_buffer.h>

#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "webapi/time_words.h"

namespace serverlog::webapi::internal {

/// An element of a list as a JSON value.
class ValueElement {
 public:
    void Add(const char* name, std::string_view text) { value_[name] = std::string(text); }
    void Add(const char* name, int number) { value_[name] = number; }

    Json::Value Take() { return std::move(value_); }

 private:
    Json::Value value_;
};

/// An element of a list as text, at the end of another: 1 µs a row instead of 14 by way of a value.
class TextElement {
 public:
    explicit TextElement(utils::TextBuffer& text) : text_(text) {}

    void Add(const char* name, std::string_view text) {
        AddName(name);
        utils::AppendJsonString(text_, text);
    }
    void Add(const char* name, int number) {
        AddName(name);
        text_.AppendNumber(number);
    }

    void End() { text_.Append('}'); }

 private:
    void AddName(const char* name) {
        text_.Append(separator_);
        separator_ = ",\"";
        text_.Append(name);  // nothing in a name needs an escape
        text_.Append("\":");
    }

    utils::TextBuffer& text_;
    const char* separator_ = "{\"";
};

/// The payload of a list: "total", "offset" and "log_list".
///
/// @param rows      the number of rows found, and those of the page
/// @param offset    as it was asked for; a negative one shows as the unsigned number of its bits
/// @param describe  adds the members of a record's element, in the order of their names:
///                  describe(record, times, element)
template <class Rows, class Describe>
Json::Value ListPayload(const Rows& rows, int offset, Describe describe) {
    Json::Value payload;
    payload["total"] = static_cast<Json::UInt64>(std::get<0>(rows));
    payload["offset"] = static_cast<Json::UInt>(offset);
    Json::Value& list = payload["log_list"] = Json::arrayValue;
    TimeFormat times;
    for (const auto& record : std::get<1>(rows)) {
        ValueElement element;
        describe(record, times, element);
        list.append(element.Take());
    }
    return payload;
}

/// The text that a writer makes of that payload, without blanks.
template <class Rows, class Describe>
std::string ListPayloadText(const Rows& rows, int offset, Describe describe) {
    utils::TextBuffer text;
    text.Append("{\"log_list\":[");
    TimeFormat times;
    const char* separator = "";
    for (const auto& record : std::get<1>(rows)) {
        text.Append(separator);
        separator = ",";
        TextElement element(text);
        describe(record, times, element);
        element.End();
    }
    return std::string(text.Text()) +
           "],\"offset\":" + std::to_string(static_cast<unsigned>(offset)) +
           ",\"total\":" + std::to_string(std::get<0>(rows)) + "}";
}

}  // namespace serverlog::webapi::internal
