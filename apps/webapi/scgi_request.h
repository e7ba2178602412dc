#pragma once

#include <mero/api_request.h>

namespace serverlog::endpoint {

/// Reads what comes before the body of an SCGI request (https://python.ca/scgi/protocol.txt): the
/// variables that a CGI program finds in its environment. The body is left to be read.
///
/// Throws std::runtime_error, with what is wrong, for anything else, for more than 128 KiB, and
/// when the connection ends before.
MERO::APIRequest::Texts ReadScgiVariables(int connection);

}  // namespace serverlog::endpoint
