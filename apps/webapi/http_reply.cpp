#include "http_reply.h"

#include <mailserver-log/webapi/api_runner.h>
#include <mero/api_runner.h>

#include <algorithm>
#include <iostream>
#include <iterator>

#include "output/reply.h"

namespace serverlog::endpoint {

namespace {

struct StatusText {
    HttpStatus status;
    const char* text;
};

// RFC 9110, chapter 15.
constexpr StatusText kStatusTexts[] = {
    {HttpStatus::kOk, "OK"},
    {HttpStatus::kBadRequest, "Bad Request"},
    {HttpStatus::kUnauthorized, "Unauthorized"},
    {HttpStatus::kForbidden, "Forbidden"},
    {HttpStatus::kNotFound, "Not Found"},
    {HttpStatus::kMethodNotAllowed, "Method Not Allowed"},
    {HttpStatus::kContentTooLarge, "Content Too Large"},
    {HttpStatus::kUriTooLong, "URI Too Long"},
    {HttpStatus::kUnsupportedMediaType, "Unsupported Media Type"},
    {HttpStatus::kUnprocessableContent, "Unprocessable Content"},
    {HttpStatus::kInternalServerError, "Internal Server Error"},
    {HttpStatus::kBadGateway, "Bad Gateway"},
    {HttpStatus::kGatewayTimeout, "Gateway Timeout"},
};

struct Failure {
    int code;      ///< of the response
    int reported;  ///< what the client gets
    HttpStatus status;
};

constexpr Failure kFailures[] = {
    {MERO::APIRunner::kNoSuchAPI, kNoSuchApi, HttpStatus::kNotFound},
    {MERO::APIRunner::kHandlerFailed, kFailed, HttpStatus::kBadGateway},
    {MERO::APIRunner::kTimedOut, kFailed, HttpStatus::kGatewayTimeout},
    {webapi::kRunFailed, webapi::kRunFailed, HttpStatus::kInternalServerError},
    // Handlers use these codes for the same.
    {kNoSuchApi, kNoSuchApi, HttpStatus::kNotFound},
    {kNoSuchMethod, kNoSuchMethod, HttpStatus::kNotFound},
    {kNoSuchVersion, kNoSuchVersion, HttpStatus::kNotFound},
    {kNoPermission, kNoPermission, HttpStatus::kForbidden},
};

// A code that is no one else's is the handler's own: it has understood the call and refuses it.
Failure Report(int code) {
    const auto* const found =
        std::find_if(std::begin(kFailures), std::end(kFailures),
                     [code](const Failure& failure) { return failure.code == code; });
    return found != std::end(kFailures) ? *found
                                        : Failure{code, code, HttpStatus::kUnprocessableContent};
}

const char* TextOf(HttpStatus status) {
    return std::find_if(std::begin(kStatusTexts), std::end(kStatusTexts),
                        [status](const StatusText& row) { return row.status == status; })
        ->text;
}

void Send(HttpStatus status, const Json::Value& reply) {
    std::cout << "Status: " << static_cast<int>(status) << ' ' << TextOf(status) << "\r\n"
              << "Content-Type: application/json; charset=utf-8\r\n"
              << "Cache-Control: no-store\r\n"
              << "X-Content-Type-Options: nosniff\r\n";
    if (status == HttpStatus::kMethodNotAllowed) {
        std::cout << "Allow: POST\r\n";
    }
    std::cout << "\r\n";
    program::WriteReply(std::cout, reply);
    std::cout.flush();
}

}  // namespace

void SendReply(const MERO::APIResponse& response) {
    if (response.GetError() == 0) {
        Send(HttpStatus::kOk, response.Reply());
        return;
    }
    const Failure failure = Report(response.GetError());
    MERO::APIResponse reported;
    reported.SetError(failure.reported);
    Send(failure.status, reported.Reply());
}

void SendError(ErrorCode code, HttpStatus status) {
    MERO::APIResponse response;
    response.SetError(code);
    Send(status, response.Reply());
}

}  // namespace serverlog::endpoint
