#pragma once

#include <mero/api_response.h>

#include "api_error.h"

namespace serverlog::endpoint {

/// Writes a reply with its HTTP headers to standard output: the payload of a success, or the code
/// of a failure and nothing else of it.
///
/// @param response  what the method has answered. Failures of a handler itself become ErrorCodes.
void SendReply(const MERO::APIResponse& response);

/// Writes the reply to a request that is refused or has failed.
void SendError(ErrorCode code, HttpStatus status);

}  // namespace serverlog::endpoint
