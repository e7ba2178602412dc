#include "mero/api_request.h"

#include "mero/api_parameter_factory.h"

#include <utility>

namespace MERO {

APIRequest::APIRequest(std::string user_name, unsigned int uid, std::string remote_ip,
                       Json::Value params, const Texts& form_params, Texts environment)
    : user_name_(std::move(user_name)),
      uid_(uid),
      remote_ip_(std::move(remote_ip)),
      params_(std::move(params)),
      environment_(std::move(environment)) {
    for (const auto& [key, text] : form_params) {
        if (!params_.isMember(key)) {
            params_[key] = text;
            untyped_.insert(key);
        }
    }
}

Json::Value APIRequest::GetEnv(const std::string& name, const Json::Value& value) const {
    const auto found = environment_.find(name);
    return found == environment_.end() ? value : Json::Value(found->second);
}

APIParameter<std::string> APIRequest::GetAndCheckString(
    const std::string& key, PARAM_NECESSITY necessity,
    bool (*validator)(const std::string&)) const {
    return GetAndCheck(key, necessity, validator);
}

APIParameter<int> APIRequest::GetAndCheckInt(const std::string& key, PARAM_NECESSITY necessity,
                                             bool (*validator)(const int&)) const {
    return GetAndCheck(key, necessity, validator);
}

template <typename T>
APIParameter<T> APIRequest::GetAndCheck(const std::string& key, PARAM_NECESSITY necessity,
                                        bool (*validator)(const T&)) const {
    using Factory = APIParameterFactoryBasicImpl<T>;
    return untyped_.count(key) == 0
               ? Factory::FromJson(params_, key, necessity, validator)
               : Factory::FromText(params_[key].asString(), necessity, validator);
}

}  // namespace MERO
