#include "output/json_writer.h"

#include <mailserver-log/utils/json_string.h>

#include <charconv>

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

template <class Number>
void AppendNumber(std::string& out, Number number) {
    char digits[24];
    const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    out.append(digits, static_cast<std::size_t>(end - digits));
}

}  // namespace

std::string CompactJson(const Json::Value& value) {
    static const Json::StreamWriterBuilder builder = CompactForm();
    return ValidUtf8(Json::writeString(builder, value));
}

void AppendJson(std::string& out, std::int32_t value) {
    AppendNumber(out, value);
}

void AppendJson(std::string& out, std::uint64_t value) {
    AppendNumber(out, value);
}

void AppendJson(std::string& out, std::string_view value) {
    utils::AppendJsonString(out, value);
}

void AppendJson(std::string& out, const Json::Value& value) {
    out += CompactJson(value);
}

void JsonWriter::Write(const Json::Value& value) {
    text_ = CompactJson(value);
    WriteText();
}

void JsonWriter::WriteText() {
    if (form_ == Form::kArray) {
        out_ << (empty_ ? "[\n" : ",\n");
    } else {
        text_ += '\n';
    }
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    empty_ = false;
}

void JsonWriter::Finish() {
    if (form_ == Form::kArray) {
        out_ << (empty_ ? "[]\n" : "\n]\n");
    }
}

}  // namespace serverlog::program
