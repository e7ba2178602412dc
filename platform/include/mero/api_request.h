#pragma once

#include <json/value.h>
#include <mero/api_parameter.h>

#include <map>
#include <set>
#include <string>

namespace MERO {

/// One call of the web API as it came in: who calls, from where, with what parameters.
///
/// Never changes after construction, so several threads may read it at once.
class APIRequest {
 public:
    /// Names with their texts.
    using Texts = std::map<std::string, std::string>;

    /// @param user_name    login name of the caller
    /// @param uid          number of that login
    /// @param remote_ip    address that the call came from, as text
    /// @param params       parameters with a type, a JSON object
    /// @param form_params  parameters that came as text without a type, as those of a query string
    ///                     do; one that `params` holds as well is dropped
    /// @param environment  the request's environment variables, for GetEnv
    APIRequest(std::string user_name, unsigned int uid, std::string remote_ip, Json::Value params,
               const Texts& form_params = {}, Texts environment = {});

    /// Login name of the caller.
    const std::string& GetLoginUserName() const { return user_name_; }

    /// Number of the caller's login.
    unsigned int GetLoginUID() const { return uid_; }

    /// Address that the call came from, as text.
    const std::string& GetRemoteIP() const { return remote_ip_; }

    /// All parameters: those with a type as given, those without as texts.
    const Json::Value& GetParams() const { return params_; }

    /// An environment variable of the request, such as "HTTP_X_MERO_TOKEN", as a text.
    ///
    /// @return `value` when there is none of that name
    Json::Value GetEnv(const std::string& name, const Json::Value& value) const;

    /// The text parameter `key`, as APIParameterFactoryBasicImpl<std::string> takes it.
    ///
    /// @param validator  refuses values by false; null accepts all
    APIParameter<std::string> GetAndCheckString(const std::string& key, PARAM_NECESSITY necessity,
                                                bool (*validator)(const std::string&)) const;

    /// The number parameter `key`; otherwise as GetAndCheckString. One that came without a type may
    /// be a number's text.
    APIParameter<int> GetAndCheckInt(const std::string& key, PARAM_NECESSITY necessity,
                                     bool (*validator)(const int&)) const;

 private:
    template <typename T>
    APIParameter<T> GetAndCheck(const std::string& key, PARAM_NECESSITY necessity,
                                bool (*validator)(const T&)) const;

    std::string user_name_;
    unsigned int uid_;
    std::string remote_ip_;
    Json::Value params_;
    std::set<std::string> untyped_;
    Texts environment_;
};

}  // namespace MERO
