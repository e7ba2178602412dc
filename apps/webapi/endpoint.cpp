#include "endpoint.h"

#include <mailserver-log/log/adminlog/logger/logger.h>
#include <mailserver/maillog.h>
#include <mero/cgi_request.h>
#include <mero/cgi_request_error.h>
#include <signal.h>
#include <syslog.h>
#include <unistd.h>

#include <optional>

#include "api_error.h"
#include "document_stream.h"
#include "http_reply.h"
#include "param_check.h"
#include "permission.h"
#include "process/failure.h"
#include "routes.h"
#include "settings_method.h"

namespace serverlog::endpoint {

namespace {

using log::adminlog::Logger;
using MERO::APIRequest;
using MERO::APIResponse;

// A call that has begun comes to its end and into the log, also when the client hangs up: writing
// to it then fails. The handler for SIGTERM, unlike ignoring, is not handed on to other programs.
void OutliveTheClient() {
    signal(SIGPIPE, SIG_IGN);
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
}

std::string Variable(const APIRequest::Texts& environment, const char* name) {
    const auto found = environment.find(name);
    return found == environment.end() ? "" : found->second;
}

void RequireHttpMethod(const std::string& method) {
    for (const char* known : {"GET", "HEAD", "POST"}) {
        if (method == known) {
            return;
        }
    }
    throw ApiError(kNoPermission, HttpStatus::kMethodNotAllowed,
                   "an HTTP method that nothing takes");
}

// The call itself has been carried out and cannot be taken back: that it is not in the log is for
// the mail log, not for the client.
void Log(Logger& logger, Call& call) {
    try {
        logger.Log(&call.request, &call.response);
    } catch (...) {
        maillog(LOG_ERR, "cannot log %s: %s", call.route.operation.c_str(),
                program::DescribeException().c_str());
    }
}

void Run(Call& call) {
    if (!call.route.writes_document) {
        call.route.run(call);
        return;
    }
    DocumentStream document;
    call.route.run(call);
    if (call.response.GetError() != 0 && document.TakeBack()) {
        call.response.SetEnableOutput(true);  // nothing of the document is out: tell the failure
    }
}

void RunLogged(Call& call) {
    if (call.route.operation.empty()) {
        Run(call);
        return;
    }
    Logger logger(call.route.operation, MethodParams(call.request));
    logger.PreLog();
    Run(call);
    Log(logger, call);
}

void Answer(const APIRequest::Texts& environment) {
    RequireHttpMethod(Variable(environment, "REQUEST_METHOD"));
    RequireAdministrator(Variable(environment, "REMOTE_USER"));
    APIRequest request = MERO::ReadCgiRequest(environment, STDIN_FILENO, MayHaveValue);
    const std::vector<Route> routes = MakeRoutes();
    const Route& route = FindRoute(routes, request);
    if (route.changes) {
        RequireIntent(request);
    }
    APIResponse response;
    Call call = {route, request, response};
    RunLogged(call);
    if (response.IsOutputEnabled()) {
        SendReply(response);
    }
}

void LogRefusal(const APIRequest::Texts& environment, const char* text) {
    maillog(LOG_WARNING, "refused a request of \"%s\" from %s: %s",
            Variable(environment, "REMOTE_USER").c_str(),
            Variable(environment, "REMOTE_ADDR").c_str(), text);
}

ErrorCode CodeOf(HttpStatus status) {
    return status == HttpStatus::kForbidden ? kNoPermission : kBadRequest;
}

}  // namespace

int Serve(const APIRequest::Texts& environment) {
    OutliveTheClient();
    try {
        Answer(environment);
    } catch (const ApiError& error) {
        LogRefusal(environment, error.what());
        SendError(error.code(), error.status());
    } catch (const MERO::CgiRequestError& error) {
        LogRefusal(environment, error.what());
        const auto status = static_cast<HttpStatus>(error.status());
        SendError(CodeOf(status), status);
    } catch (...) {
        maillog(LOG_ERR, "a request failed: %s", program::DescribeException().c_str());
        SendError(kFailed, HttpStatus::kInternalServerError);
    }
    return 0;
}

}  // namespace serverlog::endpoint
