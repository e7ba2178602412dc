#include "mero/api_runner.h"

#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <exception>
#include <map>
#include <mutex>
#include <utility>

#include "common/json_text.h"
#include "mailserver/maillog.h"
#include "mero/handler_process.h"

namespace MERO {

namespace {

using platform::HandlerProcess;

struct Call {
    std::string api;
    std::string method;
    int version;
    const Json::Value& params;
    std::string user;
};

// A process may make calls from any thread.
struct Registry {
    std::mutex mutex;
    std::map<std::string, APIRunner::Handler> handlers;
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

APIRunner::Handler FindHandler(const std::string& api) {
    Registry& registry = TheRegistry();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    const auto found = registry.handlers.find(api);
    return found == registry.handlers.end() ? nullptr : found->second;
}

Json::Value Failure(const Call& call, APIRunner::Error code, const std::string& reason) {
    maillog(LOG_WARNING, "web API \"%s\", method \"%s\": %s", call.api.c_str(), call.method.c_str(),
            reason.c_str());
    Json::Value response;
    response["success"] = false;
    response["error"]["code"] = code;
    return response;
}

bool IsResponse(const Json::Value& value) {
    return value.isObject() && value["success"].isBool();
}

Json::Value RunInProcess(const APIRunner::Handler& handler, const Call& call) {
    try {
        Json::Value response = handler(call.method, call.version, call.params, call.user);
        if (IsResponse(response)) {
            return response;
        }
        return Failure(call, APIRunner::kHandlerFailed, "gave no response object");
    } catch (const std::exception& exception) {
        return Failure(call, APIRunner::kHandlerFailed, exception.what());
    } catch (...) {
        return Failure(call, APIRunner::kHandlerFailed, "threw something unknown");
    }
}

bool IsExecutable(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           eaccess(path.c_str(), X_OK) == 0;
}

Json::Value RunExecutable(const std::string& path, const Call& call) {
    HandlerProcess process;
    const HandlerProcess::Outcome outcome =
        process.Run({path, call.method, std::to_string(call.version), call.user},
                    platform::ToJsonText(call.params),
                    std::chrono::seconds(APIRunner::kTimeLimitSeconds), APIRunner::kOutputLimit);
    if (outcome == HandlerProcess::Outcome::TimedOut) {
        return Failure(call, APIRunner::kTimedOut, process.Reason());
    }
    if (outcome == HandlerProcess::Outcome::Failed) {
        return Failure(call, APIRunner::kHandlerFailed, process.Reason());
    }
    Json::Value response;
    if (!platform::ParseJsonText(process.Output(), response) || !IsResponse(response)) {
        return Failure(call, APIRunner::kHandlerFailed, "wrote no response object");
    }
    return response;
}

Json::Value Run(const Call& call) {
    const APIRunner::Handler handler = FindHandler(call.api);
    if (handler) {
        return RunInProcess(handler, call);
    }
    // The name becomes a file name: it must not lead out of the folder.
    if (call.api.empty() || call.api.find('/') != std::string::npos ||
        call.api.find("..") != std::string::npos) {
        return Failure(call, APIRunner::kNoSuchAPI, "no name of a web API");
    }
    const std::string path = APIRunner::kHandlerFolder + ("/" + call.api);
    if (!IsExecutable(path)) {
        return Failure(call, APIRunner::kNoSuchAPI, "no executable " + path);
    }
    return RunExecutable(path, call);
}

}  // namespace

void APIRunner::Register(const std::string& api, Handler handler) {
    Registry& registry = TheRegistry();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    registry.handlers[api] = std::move(handler);
}

void APIRunner::Unregister(const std::string& api) {
    Registry& registry = TheRegistry();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    registry.handlers.erase(api);
}

void APIRunner::Exec(Json::Value& response, const char* api, int version, const char* method,
                     const Json::Value& params, const char* user) {
    response = Run({api, method, version, params, user});
}

}  // namespace MERO
