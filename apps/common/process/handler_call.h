#pragma once

#include <json/value.h>
#include <mero/api_response.h>

#include <string>

namespace serverlog::program {

/// What a web API call asks for.
struct HandlerMethod {
    std::string api;
    std::string method;
    int version;
};

/// Has the handler of an API carry out a method, and puts the outcome into `response`: its data, or
/// the handler's own code or one of MERO::APIRunner::Error, with the handler's "error" as the body.
///
/// @param user  login name in whose name the call is made
void CallHandler(const HandlerMethod& method, const Json::Value& params, const std::string& user,
                 MERO::APIResponse& response);

}  // namespace serverlog::program
