#pragma once

namespace serverlog::endpoint {

/// Answers the one request that the web server hands to this process (CGI 1.1, RFC 3875): reads it
/// from the environment and standard input and writes the reply to standard output.
///
/// Whatever is refused or fails is answered as ErrorCode tells; why stands in the mail log only.
///
/// @return the exit status, which is 0
int Serve();

}  // namespace serverlog::endpoint
