#include "record/column_exchange.h"

#include <mailserver-log/utils/error_line.h>

#include "utils/json_text.h"

namespace serverlog::record::internal {

void ReadColumn(const soci::values& values, const char* name, NullText /*null_text*/,
                std::int32_t& value) {
    value = values.get<int>(name);
}

void ReadColumn(const soci::values& values, const char* name, NullText /*null_text*/,
                std::uint64_t& value) {
    value = static_cast<std::uint64_t>(values.get<long long>(name));
}

void ReadColumn(const soci::values& values, const char* name, NullText null_text,
                std::string& value) {
    value = null_text == NullText::Empty ? values.get<std::string>(name, std::string())
                                         : values.get<std::string>(name);
}

void ReadColumn(const soci::values& values, const char* name, NullText null_text,
                Json::Value& value) {
    std::string text;
    ReadColumn(values, name, null_text, text);
    if (!utils::ParseJsonText(text, value)) {
        // The one JSON column that there is gave the line its words.
        SERVERLOG_ERROR_LINE("json parse webapi param fail: %s", text.c_str());
    }
}

void WriteColumn(soci::values& values, const char* name, std::int32_t value) {
    values.set(name, static_cast<int>(value));
}

void WriteColumn(soci::values& values, const char* name, std::uint64_t value) {
    values.set(name, static_cast<long long>(value));
}

void WriteColumn(soci::values& values, const char* name, const std::string& value) {
    values.set(name, value);
}

void WriteColumn(soci::values& values, const char* name, const Json::Value& value) {
    values.set(name, utils::ToJsonText(value));
}

}  // namespace serverlog::record::internal
