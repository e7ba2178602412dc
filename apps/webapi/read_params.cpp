#include "read_params.h"

#include <charconv>
#include <system_error>

#include "api_error.h"

namespace serverlog::endpoint {

void RefuseParam(const std::string& key) {
    throw ApiError(kBadRequest, HttpStatus::kBadRequest, "the parameter " + key + " is unusable");
}

// A number, or its text where the request has no types. Seconds outgrow an int.
std::optional<std::int64_t> ReadTime(const MERO::APIRequest& request, const char* key) {
    const Json::Value& value = request.GetParams()[key];
    if (value.isNull()) {
        return std::nullopt;
    }
    if (value.isInt64()) {
        return value.asInt64();
    }
    if (!value.isString()) {
        RefuseParam(key);
    }
    const std::string text = value.asString();
    const char* const end = text.data() + text.size();
    std::int64_t time = 0;
    const auto [rest, error] = std::from_chars(text.data(), end, time);
    if (rest != end || error != std::errc()) {
        RefuseParam(key);
    }
    return time;
}

}  // namespace serverlog::endpoint
