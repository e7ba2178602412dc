#include "settings_method.h"

#include "process/handler_call.h"

namespace serverlog::endpoint {

Json::Value MethodParams(const MERO::APIRequest& request) {
    Json::Value params = request.GetParams();
    for (const char* name : {"api", "method", "version"}) {
        params.removeMember(name);
    }
    return params;
}

void RunSettingsMethod(Call& call) {
    program::CallHandler({call.route.api, call.route.method, kVersion}, MethodParams(call.request),
                         call.request.GetLoginUserName(), call.response);
}

}  // namespace serverlog::endpoint
