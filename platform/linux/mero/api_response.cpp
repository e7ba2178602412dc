#include "mero/api_response.h"

namespace MERO {

void APIResponse::SetSuccess(const Json::Value& data) {
    SetError(0, data);
}

void APIResponse::SetError(int code, const Json::Value& data) {
    error_ = code;
    body_ = data;
}

Json::Value APIResponse::Reply() const {
    Json::Value reply;
    reply["success"] = error_ == 0;
    if (error_ == 0) {
        reply["data"] = body_;
    } else {
        reply["error"]["code"] = error_;
    }
    return reply;
}

}  // namespace MERO
