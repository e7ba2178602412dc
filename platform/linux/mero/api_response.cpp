#include "mero/api_response.h"

namespace MERO {

void APIResponse::SetSuccess(const Json::Value& data) {
    SetError(0, data);
}

void APIResponse::SetError(int code, const Json::Value& data) {
    error_ = code;
    body_ = data;
}

}  // namespace MERO
