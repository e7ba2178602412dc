#include <mailserver/maillog.h>
#include <mero/cgi_request.h>
#include <stdlib.h>
#include <syslog.h>
#include <unistd.h>

#include <exception>

#include "connections.h"
#include "endpoint.h"
#include "page_cache.h"
#include "process/sqlite_mode.h"
#include "scgi_request.h"

// Without arguments and under one name either way, so that one set of rights and one line of a
// server's configuration do: what standard input is tells how the web server calls.
int main() {
    namespace endpoint = serverlog::endpoint;
    openlog("mailserver-log.cgi", 0, LOG_MAIL);
    const MERO::APIRequest::Texts environment = MERO::CgiEnvironment();
    // The program may run with rights that its caller has not: no library takes a path from here.
    clearenv();
    serverlog::program::PrepareSqlite();
    endpoint::KeepPageCacheSmall();
    if (!endpoint::HasConnections()) {
        return endpoint::Serve(environment);
    }
    try {
        endpoint::AwaitConnection();
        endpoint::Serve(endpoint::ReadScgiVariables(STDIN_FILENO));
        endpoint::EndConnection();
        return 0;
    } catch (const std::exception& error) {
        maillog(LOG_ERR, "no request from the web server: %s", error.what());
        return 1;
    }
}
