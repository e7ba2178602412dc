#include "token_method.h"

#include "request_token.h"

namespace serverlog::endpoint {

void GetToken(Call& call) {
    Json::Value data;
    data["token"] = RequestToken(call.request.GetLoginUID()).Text();
    call.response.SetSuccess(data);
}

}  // namespace serverlog::endpoint
