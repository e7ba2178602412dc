#pragma once

#include <json/value.h>

#include <string>

namespace MERO {

/// One call of the web API as it came in: who calls, from where, with what parameters.
///
/// Never changes after construction, so several threads may read it at once.
class APIRequest {
 public:
    /// @param user_name  login name of the caller
    /// @param uid        number of that login
    /// @param remote_ip  address that the call came from, as text
    /// @param params     parameters, a JSON object
    APIRequest(std::string user_name, unsigned int uid, std::string remote_ip, Json::Value params);

    /// Login name of the caller.
    const std::string& GetLoginUserName() const { return user_name_; }

    /// Number of the caller's login.
    unsigned int GetLoginUID() const { return uid_; }

    /// Address that the call came from, as text.
    const std::string& GetRemoteIP() const { return remote_ip_; }

    /// The parameters as given at construction.
    const Json::Value& GetParams() const { return params_; }

 private:
    std::string user_name_;
    unsigned int uid_;
    std::string remote_ip_;
    Json::Value params_;
};

}  // namespace MERO
