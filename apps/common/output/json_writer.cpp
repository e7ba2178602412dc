#include "output/json_writer.h"

#include <mailserver-log/utils/json_string.h>

#include "output/display_text.h"

namespace serverlog::program {

namespace {

Json::StreamWriterBuilder CompactForm() {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    builder["commentStyle"] = "None";
    return builder;
}

}  // namespace

std::string CompactJson(const Json::Value& value) {
    static const Json::StreamWriterBuilder builder = CompactForm();
    return ValidUtf8(Json::writeString(builder, value));
}

void AppendJson(std::string& out, std::int32_t value) {
    out += std::to_string(value);
}

void AppendJson(std::string& out, std::uint64_t value) {
    out += std::to_string(value);
}

void AppendJson(std::string& out, const std::string& value) {
    utils::AppendJsonString(out, value);
}

void AppendJson(std::string& out, const Json::Value& value) {
    out += CompactJson(value);
}

void JsonWriter::Write(const Json::Value& value) {
    WriteText(CompactJson(value));
}

void JsonWriter::WriteText(std::string_view text) {
    if (form_ == Form::kArray) {
        out_ << (empty_ ? "[\n" : ",\n");
    }
    out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (form_ == Form::kLines) {
        out_ << '\n';
    }
    empty_ = false;
}

void JsonWriter::Finish() {
    if (form_ == Form::kArray) {
        out_ << (empty_ ? "[]\n" : "\n]\n");
    }
}

}  // namespace serverlog::program
