#include "mero/api_request.h"

#include <utility>

namespace MERO {

APIRequest::APIRequest(std::string user_name, unsigned int uid, std::string remote_ip,
                       Json::Value params)
    : user_name_(std::move(user_name)),
      uid_(uid),
      remote_ip_(std::move(remote_ip)),
      params_(std::move(params)) {}

}  // namespace MERO
