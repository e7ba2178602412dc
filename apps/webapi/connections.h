#pragma once

namespace serverlog::endpoint {

/// Whether standard input is a socket that connections come to.
bool HasConnections();

/// Waits at standard input for connections, and returns for each in a process of its own, which has
/// the connection as standard input and output. So a request has all to itself, as under CGI, but
/// its process need not be loaded: that takes more than half of the time of a short list. The next
/// connection is taken as soon as the process before has ended or runs for a tenth of a second.
///
/// Never returns in the process that waits. That ends by a signal, and when the program that
/// started it ends.
///
/// Throws std::system_error when the socket takes no connections.
void AwaitConnection();

/// Ends the reply on the connection, and reads what is left of the request: without that the web
/// server would be told of an error in place of the end of the reply.
void EndConnection();

}  // namespace serverlog::endpoint
