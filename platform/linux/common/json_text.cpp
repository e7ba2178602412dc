#include "common/json_text.h"

#include <json/reader.h>
#include <json/writer.h>

#include <memory>

namespace platform {

std::string ToJsonText(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value);
}

bool ParseJsonText(const std::string& text, Json::Value& value) {
    Json::CharReaderBuilder builder;
    builder["failIfExtra"] = true;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errors;
    try {
        return reader->parse(text.data(), text.data() + text.size(), &value, &errors);
    } catch (const Json::Exception&) {
        return false;  // thrown for a text that is nested too deep
    }
}

}  // namespace platform
