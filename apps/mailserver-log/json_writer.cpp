#include "json_writer.h"

#include "display_text.h"

namespace serverlog::program {

JsonWriter::JsonWriter(std::ostream& out, Form form) : out_(out), form_(form) {
    builder_["indentation"] = "";
    builder_["emitUTF8"] = true;
    builder_["commentStyle"] = "None";
}

void JsonWriter::Write(const Json::Value& value) {
    if (form_ == Form::kArray) {
        out_ << (empty_ ? "[\n" : ",\n");
    }
    out_ << ValidUtf8(Json::writeString(builder_, value));
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
