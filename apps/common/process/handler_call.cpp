#include "process/handler_call.h"

#include <mero/api_runner.h>

namespace serverlog::program {

void CallHandler(const HandlerMethod& method, const Json::Value& params, const std::string& user,
                 MERO::APIResponse& response) {
    Json::Value result;
    MERO::APIRunner::Exec(result, method.api.c_str(), method.version, method.method.c_str(), params,
                          user.c_str());
    if (result["success"].isBool() && result["success"].asBool()) {
        response.SetSuccess(result["data"]);
        return;
    }
    const Json::Value& error = result["error"];
    const bool has_code = error.isObject() && error["code"].isInt() && error["code"].asInt() != 0;
    response.SetError(has_code ? error["code"].asInt() : MERO::APIRunner::kHandlerFailed, error);
}

}  // namespace serverlog::program
