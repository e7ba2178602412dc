#pragma once

#include <json/json.h>

#include <string>

namespace serverlog::utils {

/// Calls a web API of this machine in this process, as the user "admin" and with the effective ids
/// of root, whoever asked.
///
/// The ids belong to the whole process: only one thread at a time may be in here. Where the system
/// refuses to switch them the API is called all the same; both ends of the call are told in the
/// system log.
///
/// @param api      name of the API
/// @param method   name of its method
/// @param params   parameters of the call, a JSON object
/// @param version  version of the API
/// @return         the data of the response
/// @throws         Exception<ETag::SDK> with ApiDataFail when the call failed or gave no data
Json::Value CallApiGetData(const std::string& api, const std::string& method,
                           const Json::Value& params, int version);

}  // namespace serverlog::utils
