#pragma once

#include <json/value.h>
#include <mailserver-log/webapi/api_runner.h>
#include <mero/api_request.h>
#include <mero/api_response.h>

#include <string>
#include <tuple>

#include "support/json_value.h"

namespace test {

/// A request as the program that carries out web API calls makes it, for the parameters of a query.
inline MERO::APIRequest RequestWith(const Json::Value& params) {
    return MERO::APIRequest("admin", 1024, "198.51.100.7", params);
}

/// The payload of a query method, or for a failure its code and reason.
template <class Method>
Json::Value PayloadOf(const std::string& params) {
    const auto [code, data] = serverlog::webapi::RunAPIMethod<Method>(JsonOf(params));
    return code == 0 ? data : Json::Value(std::to_string(code) + " " + data["reason"].asString());
}

namespace internal {

inline std::string Members(const Json::Value& list, const char* member) {
    std::string text;
    for (const Json::Value& element : list) {
        text += (text.empty() ? "" : " ") + element[member].asString();
    }
    return text;
}

}  // namespace internal

/// One member of each element of the list that a query method gives, joined with a blank.
template <class Method>
std::string ListOf(const std::string& params, const char* member,
                   const char* list_member = "log_list") {
    const Json::Value payload = PayloadOf<Method>(params);
    return internal::Members(payload[list_member], member);
}

/// The same through the request form.
template <class Method>
std::string RequestListOf(const std::string& params, const char* member) {
    MERO::APIRequest request = RequestWith(JsonOf(params));
    MERO::APIResponse response;
    serverlog::webapi::RunAPIMethod<Method>(&request, &response);
    const Json::Value payload = response.GetBody();
    return internal::Members(payload["log_list"], member);
}

}  // namespace test
