#include "utils/merosdk/run_api.h"

#include <mailserver-log/exception/exception.h>
#include <mero/api_runner.h>

#include "utils/merosdk/critical_section.h"

namespace serverlog::utils {

namespace {

constexpr char kCaller[] = "admin";

bool HasData(const Json::Value& response) {
    return response.isObject() && response["success"] == true && response.isMember("data");
}

}  // namespace

Json::Value CallApiGetData(const std::string& api, const std::string& method,
                           const Json::Value& params, int version) {
    Json::Value response;
    {
        const CriticalSection section(__FILE__, __LINE__);
        MERO::APIRunner::Exec(response, api.c_str(), version, method.c_str(), params, kCaller);
    }
    if (!HasData(response)) {
        throw make_exception<ETag::SDK>(SDKError::ApiDataFail,
                                        "api: " + api + " method: " + method);
    }
    return response["data"];
}

}  // namespace serverlog::utils
