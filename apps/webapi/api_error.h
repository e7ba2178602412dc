#pragma once

#include <stdexcept>
#include <string>

namespace serverlog::endpoint {

/// What the client reads as {"success":false,"error":{"code":N}}, beside the codes of the methods
/// themselves.
enum ErrorCode : int {
    kFailed = 100,         ///< something failed in here
    kBadRequest = 101,     ///< the request, or a parameter of it, can't be used
    kNoSuchApi = 102,      ///< no API of that name, or nothing on this machine carries it out
    kNoSuchMethod = 103,   ///< the API has no such method
    kNoSuchVersion = 104,  ///< the method has no such version
    kNoPermission = 105,   ///< not for this caller, or not in this way
};

/// The HTTP statuses that are used (RFC 9110, chapter 15).
enum class HttpStatus : int {
    kOk = 200,
    kBadRequest = 400,
    kUnauthorized = 401,
    kForbidden = 403,
    kNotFound = 404,
    kMethodNotAllowed = 405,
    kContentTooLarge = 413,
    kUriTooLong = 414,
    kUnsupportedMediaType = 415,
    kUnprocessableContent = 422,
    kInternalServerError = 500,
    kBadGateway = 502,
    kGatewayTimeout = 504,
};

/// A request that is refused. what() is a sentence for the mail log; the client gets the numbers
/// alone.
class ApiError : public std::runtime_error {
 public:
    ApiError(ErrorCode code, HttpStatus status, const std::string& text)
        : std::runtime_error(text), code_(code), status_(status) {}

    ErrorCode code() const noexcept { return code_; }
    HttpStatus status() const noexcept { return status_; }

 private:
    ErrorCode code_;
    HttpStatus status_;
};

}  // namespace serverlog::endpoint
