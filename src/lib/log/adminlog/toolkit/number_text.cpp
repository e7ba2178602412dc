#include "log/adminlog/toolkit/number_text.h"

#include "log/adminlog/toolkit/reading.h"

#include <charconv>
#include <string>

namespace serverlog::log::adminlog {

std::string NumberText(std::string const& member, Json::Value const& object) {
    Json::Value const value = GetObjectVal(object, member);
    if (value.type() != Json::realValue) {
        return value.asString();
    }
    char text[32];  // the shortest form of a double has at most 24 characters
    char* const end = std::to_chars(text, text + sizeof(text), value.asDouble()).ptr;
    return std::string(text, end);
}

}  // namespace serverlog::log::adminlog
