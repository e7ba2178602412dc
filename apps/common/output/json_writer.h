#pragma once

#include <json/json.h>

#include <ostream>
#include <string>

namespace serverlog::program {

/// A JSON value in UTF-8 without blanks and line ends. Bytes in its texts that are no UTF-8 become
/// U+FFFD.
std::string CompactJson(const Json::Value& value);

/// Writes JSON values as CompactJson, one a line: as NDJSON, or as the elements of one array.
class JsonWriter {
 public:
    enum class Form { kLines, kArray };

    /// @param out  must outlive this object
    JsonWriter(std::ostream& out, Form form) : out_(out), form_(form) {}

    void Write(const Json::Value& value);

    /// To be called once, behind the last value.
    void Finish();

 private:
    std::ostream& out_;
    Form form_;
    bool empty_ = true;
};

}  // namespace serverlog::program
