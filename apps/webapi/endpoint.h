#pragma once

#include <mero/api_request.h>

namespace serverlog::endpoint {

/// Answers one request: reads its body from standard input and writes the reply to standard output,
/// as a CGI program does (CGI 1.1, RFC 3875).
///
/// Whatever is refused or fails is answered as ErrorCode tells; why stands in the mail log only.
///
/// @param environment  the request's CGI variables
/// @return             the exit status, which is 0
int Serve(const MERO::APIRequest::Texts& environment);

}  // namespace serverlog::endpoint
