#include <mailserver-log/log/adminlog/logger/logger.h>
#include <mero/api_request.h>
#include <mero/api_response.h>
#include <syslog.h>

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <tuple>

#include "input/input.h"
#include "process/failure.h"
#include "process/handler_call.h"
#include "process/syslog_echo.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

constexpr char kIdentifier[] = "mailserver-log";

struct CallOptions {
    std::string operation;
    std::string params_path;  // empty if none is given
    std::string body_path;    // likewise
    int error = 0;
    std::string user = "admin";
    unsigned int uid = 1024;
    std::string ip = "127.0.0.1";
    bool has_exec = false;
    std::tuple<std::string, std::string, int> exec;  // API, METHOD, VERSION
    bool echo = false;
};

Json::Value ReadParams(const std::string& path) {
    return path.empty() ? Json::Value(Json::objectValue) : ReadObject(path, "the parameters");
}

Json::Value ReadBody(const std::string& path) {
    return path.empty() ? Json::Value() : ParseDocument(ReadInput(path), path + " (the body)");
}

void RunApi(const CallOptions& options, const Json::Value& params, MERO::APIResponse& response) {
    const auto& [api, method, version] = options.exec;
    CallHandler({api, method, version}, params, options.user, response);
    if (response.GetError() == 0) {
        return;
    }
    std::cerr << "mailserver-log: " << api << " " << method << " failed with code "
              << response.GetError()
              << "; such a call is logged only where the operation asks for it" << std::endl;
}

void Log(log::adminlog::Logger& logger, const CallOptions& options, MERO::APIRequest& request,
         MERO::APIResponse& response) {
    std::optional<SyslogEcho> echo;
    if (options.echo) {
        echo.emplace(kIdentifier);
    }
    try {
        logger.Log(&request, &response);
    } catch (...) {
        throw Failure("cannot log " + options.operation + ": " + DescribeException() +
                      "; check that " + db::kSpoolFolder + " exists and that you may write there");
    }
    if (echo) {
        echo->Finish(std::cout, std::cerr);
    }
}

void RunCall(const CallOptions& options) {
    if (options.params_path == "-" && options.body_path == "-") {
        throw CLI::ValidationError("--body", "standard input holds the parameters already");
    }
    // All input is read before anything happens.
    const Json::Value params = ReadParams(options.params_path);
    const Json::Value body = ReadBody(options.body_path);
    openlog(kIdentifier, 0, LOG_USER);
    log::adminlog::Logger logger(options.operation, params);
    logger.PreLog();
    MERO::APIRequest request(options.user, options.uid, options.ip, params);
    MERO::APIResponse response;
    if (options.has_exec) {
        RunApi(options, params, response);
    } else {
        response.SetError(options.error, body);
    }
    Log(logger, options, request, response);
}

}  // namespace

void AddCall(CLI::App& program) {
    const auto options = std::make_shared<CallOptions>();
    CLI::App* call =
        program.add_subcommand("call", "Log a web API call of an administrator on the system log");
    call->footer(
        "A file that is missing or is no JSON ends it with status 1 and nothing is logged. An "
        "operation without rules, and a call that fails, are no failure of this program.");
    call->add_option("OPERATION", options->operation,
                     "Operation, such as Webapi_Domain_Set; a version (_v1) may follow")
        ->required();
    call->add_option("--params", options->params_path,
                     "File with the parameters, a JSON object; - is standard input [{}]")
        ->type_name("FILE");
    auto* body = call->add_option("--body", options->body_path,
                                  "File with the response's body, a JSON value [null]")
                     ->type_name("FILE");
    auto* error = call->add_option("--error", options->error, "The response's error code [0]");
    call->add_option("--user", options->user, "Login name of the caller [admin]")
        ->type_name("NAME");
    call->add_option("--uid", options->uid, "User number of the caller [1024]")->type_name("N");
    call->add_option("--ip", options->ip, "Address of the caller [127.0.0.1]")
        ->type_name("ADDRESS");
    auto* exec =
        call->add_option("--exec", options->exec,
                         "Run this web API method with the parameters; its result is the response")
            ->type_name("API METHOD VERSION")
            ->excludes(body)
            ->excludes(error);
    call->add_flag("--echo", options->echo, "Write each line to standard output, too");
    call->callback([options, exec] {
        options->has_exec = exec->count() > 0;
        RunCall(*options);
    });
}

}  // namespace serverlog::program
