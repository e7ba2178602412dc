#pragma once

#include <json/value.h>
#include <mero/api_request.h>

#include <functional>
#include <string>

namespace MERO {

/// Longest query string of a CGI request, in bytes.
inline constexpr unsigned kCgiQueryLimit = 16U << 10;

/// Longest body of a CGI request, in bytes.
inline constexpr unsigned kCgiBodyLimit = 1U << 20;

/// Says whether a parameter may have this value.
using ParamCheck = std::function<bool(const std::string& key, const Json::Value& value)>;

/// This process's environment variables.
APIRequest::Texts CgiEnvironment();

/// Reads the request that a web server handed to this process (CGI 1.1, RFC 3875).
///
/// Parameters come from the query string and from the body of a POST, which is a form
/// (application/x-www-form-urlencoded, WHATWG URL Standard, chapter 5) or a JSON object
/// (application/json). Of a key that comes more than once the last value counts, and one of the
/// body counts more than one of the query string. Query string and form are percent-decoded, with
/// "+" for a blank; a "%" without two hexadecimal digits behind it stands for itself, a key without
/// "=" has an empty value. The bytes that come out need not be UTF-8.
///
/// Who calls is REMOTE_USER, with the number that the system's user database (NSS) has for that
/// name and that of "nobody" where it has none; the address is REMOTE_ADDR.
///
/// @param environment  the CGI variables; the request's GetEnv gives them all
/// @param body         descriptor to read the body from, CONTENT_LENGTH bytes of it; stays open
/// @param check        looks at each parameter before anyone uses it, so that a program that faces
///                     the network can restrict those that name files ("db_path", "lang"): the
///                     library itself opens what it is told to. Without it all are accepted.
/// @throws CgiRequestError for a request that cannot be used
APIRequest ReadCgiRequest(const APIRequest::Texts& environment, int body,
                          const ParamCheck& check = nullptr);

}  // namespace MERO
