#include "utils/json_text.h"

namespace serverlog::utils {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

std::string ToJsonText(const Json::Value& value) {
    return Json::FastWriter().write(value);
}

bool ParseJsonText(const std::string& text, Json::Value& value) {
    return Json::Reader().parse(text, value);
}

#pragma GCC diagnostic pop

}  // namespace serverlog::utils
