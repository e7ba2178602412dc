#pragma once

#include <json/json.h>

#include <ostream>

namespace serverlog::program {

/// Writes JSON values in UTF-8, one a line: as NDJSON, or as the elements of one array. Bytes in
/// their texts that are no UTF-8 become U+FFFD.
class JsonWriter {
 public:
    enum class Form { kLines, kArray };

    /// @param out  must outlive this object
    JsonWriter(std::ostream& out, Form form);

    void Write(const Json::Value& value);

    /// To be called once, behind the last value.
    void Finish();

 private:
    std::ostream& out_;
    Form form_;
    Json::StreamWriterBuilder builder_;
    bool empty_ = true;
};

}  // namespace serverlog::program
