#include "output/json_writer.h"

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

void JsonWriter::Write(const Json::Value& value) {
    text_.Clear();
    text_.Append(CompactJson(value));
    WriteText();
}

void JsonWriter::WriteText() {
    if (form_ == Form::kArray) {
        out_ << (empty_ ? "[\n" : ",\n");
    } else {
        text_.Append('\n');
    }
    const std::string_view text = text_.Text();
    out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    empty_ = false;
}

void JsonWriter::Finish() {
    if (form_ == Form::kArray) {
        out_ << (empty_ ? "[]\n" : "\n]\n");
    }
}

}  // namespace serverlog::program
