#include "support/json_value.h"

#include <json/reader.h>
#include <json/writer.h>

#include <sstream>

namespace test {

Json::Value JsonOf(const std::string& text) {
    std::istringstream stream(text);
    Json::Value value;
    stream >> value;  // throws Json::RuntimeError
    return value;
}

std::string TextOf(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

}  // namespace test
