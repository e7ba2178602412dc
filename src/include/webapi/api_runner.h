#pragma once

#include <json/value.h>
#include <mailserver-log/export.h>

#include <string>
#include <tuple>

namespace MERO {
class APIRequest;
class APIResponse;
}  // namespace MERO

namespace serverlog::webapi {

class BaseAPI;

/// The code of every call that failed by an exception.
inline constexpr int kRunFailed = 117;

/// Makes a method object for the request, runs it and tells the response of its end. Where the run
/// throws, the response gets kRunFailed without a reason, also with its output off, and the reason
/// goes to the error log.
///
/// @tparam T  one of adminlog::List_v1, adminlog::ListUser_v1, adminlog::Export_v1, emaillog::List,
///            emaillog::Export, securitylog::List and securitylog::Export
///
/// Both pointers stay the caller's and must not be null. Throws only what making the object does.
/// Methods open stores as root: one call at a time in a process.
template <class T>
MAILSERVER_LOG_EXPORT void RunAPIMethod(MERO::APIRequest* request, MERO::APIResponse* response);

/// The same for a caller that has no request.
///
/// @param params  the parameters, an object
/// @return 0 and the payload, or kRunFailed and an object whose "reason" tells why: the text of an
///         Exception<ETag::DB>, "Unknown Failure!" for anything else
template <class T>
MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> RunAPIMethod(const Json::Value& params);

/// RunAPIMethod for a method object of the request form that the caller made, so as to prepare it
/// before it runs. `response` is the one that the object was made with.
MAILSERVER_LOG_EXPORT void RunPrepared(BaseAPI& method, MERO::APIResponse* response);

/// The same for a method object of the JSON form.
MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> RunPrepared(BaseAPI& method);

/// The same for a list whose payload is wanted as JSON text only: its ExecuteAsText.
///
/// @tparam List     one of adminlog::List_v1, emaillog::List and securitylog::List
/// @param  payload  receives the text where the code is 0
/// @return 0 and an object that says nothing, or what RunPrepared gives for the same failure
template <class List>
MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> RunPreparedAsText(List& method,
                                                                     std::string& payload);

}  // namespace serverlog::webapi
