#pragma once

#include <json/value.h>

#include <tuple>

namespace serverlog::webapi::internal {

/// The payload of a list: "total", "offset" and "log_list".
///
/// @param rows        the number of rows found, and those of the page
/// @param offset      as it was asked for; a negative one shows as the unsigned number of its bits
/// @param to_element  makes the element of a record
template <class Rows, class ToElement>
Json::Value ListPayload(const Rows& rows, int offset, ToElement to_element) {
    Json::Value payload;
    payload["total"] = static_cast<Json::UInt64>(std::get<0>(rows));
    payload["offset"] = static_cast<Json::UInt>(offset);
    Json::Value& list = payload["log_list"] = Json::arrayValue;
    for (const auto& record : std::get<1>(rows)) {
        list.append(to_element(record));
    }
    return payload;
}

}  // namespace serverlog::webapi::internal
