#include <mailserver-log/webapi/base_api.h>
#include <mero/api_request.h>
#include <mero/api_response.h>

namespace serverlog::webapi {

std::tuple<int, Json::Value> make_output(int code, std::string reason) {
    Json::Value data;
    data["reason"] = reason;
    return {code, data};
}

BaseAPI::BaseAPI(MERO::APIRequest* request, MERO::APIResponse* response)
    : request_(request), response_(response), json_params_(Json::objectValue) {}

BaseAPI::BaseAPI(const Json::Value& params) : json_params_(params) {}

void BaseAPI::RunByAPIRequest() {
    const auto [read_code, read_data] = ReadRequest();
    if (read_code != 0) {
        response_->SetError(read_code, read_data);
        return;
    }
    const auto [code, data] = Execute();
    if (!output_enabled_) {
        return;
    }
    if (code != 0) {
        response_->SetError(code, data);
        return;
    }
    response_->SetSuccess(data);
}

std::tuple<int, Json::Value> BaseAPI::RunByJson() {
    const std::tuple<int, Json::Value> read = ReadRequestFromJson();
    return std::get<0>(read) != 0 ? read : Execute();
}

void BaseAPI::EnableOutput() {
    SetOutput(true);
}

void BaseAPI::DisableOutput() {
    SetOutput(false);
}

void BaseAPI::SetOutput(bool enabled) {
    output_enabled_ = enabled;
    if (response_ != nullptr) {
        response_->SetEnableOutput(enabled);
    }
}

std::string BaseAPI::mero_token() const {
    return request_ == nullptr ? std::string()
                               : request_->GetEnv("HTTP_X_MERO_TOKEN", Json::Value()).asString();
}

}  // namespace serverlog::webapi
