#include <mailserver-log/record/columns.h>

#include <algorithm>

#include "utils/json_text.h"

namespace serverlog::record::internal {

namespace {

[[noreturn]] void Refuse(const char* name, const char* wanted) {
    throw ColumnError("column \"" + std::string(name) + "\" must be " + wanted);
}

}  // namespace

void ReadJson(const char* name, const Json::Value& json, std::int32_t& value) {
    if (!json.isInt()) {
        Refuse(name, "a whole number of 32 bits");
    }
    value = json.asInt();
}

void ReadJson(const char* name, const Json::Value& json, std::uint64_t& value) {
    if (!json.isUInt64()) {
        Refuse(name, "a whole number of 64 bits without a sign");
    }
    value = json.asUInt64();
}

void ReadJson(const char* name, const Json::Value& json, std::string& value) {
    if (!json.isString()) {
        Refuse(name, "a text");
    }
    value = json.asString();
}

void ReadJson(const char* /*name*/, const Json::Value& json, Json::Value& value) {
    value = json;
}

Json::Value WriteJson(std::int32_t value) {
    return value;
}

Json::Value WriteJson(std::uint64_t value) {
    return Json::Value::UInt64{value};
}

Json::Value WriteJson(const std::string& value) {
    return value;
}

Json::Value WriteJson(const Json::Value& value) {
    return value;
}

std::string WriteText(std::int32_t value) {
    return std::to_string(value);
}

std::string WriteText(std::uint64_t value) {
    return std::to_string(value);
}

std::string WriteText(const std::string& value) {
    return value;
}

std::string WriteText(const Json::Value& value) {
    std::string text = utils::ToJsonText(value);
    text.pop_back();  // the line feed that ends every JSON text
    return text;
}

void CheckMembers(const Json::Value& json, const std::vector<std::string>& names) {
    if (!json.isObject()) {
        throw ColumnError("a record must be a JSON object");
    }
    for (const std::string& member : json.getMemberNames()) {
        if (std::find(names.begin(), names.end(), member) == names.end()) {
            throw ColumnError("there is no column \"" + member + "\"");
        }
    }
}

}  // namespace serverlog::record::internal
