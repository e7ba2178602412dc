#pragma once

#include <mero/api_request.h>

#include <cstdint>
#include <optional>
#include <string>

namespace serverlog::endpoint {

/// Refuses a call for one of its parameters: throws ApiError with kBadRequest.
[[noreturn]] void RefuseParam(const std::string& key);

/// The parameter `key` as seconds since the epoch; nothing where there is none. Throws ApiError
/// with kBadRequest for anything but a whole number.
std::optional<std::int64_t> ReadTime(const MERO::APIRequest& request, const char* key);

}  // namespace serverlog::endpoint
