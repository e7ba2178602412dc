#include "mero/api_parameter_factory.h"

#include <charconv>
#include <system_error>
#include <utility>

namespace MERO {

namespace {

bool ReadText(const std::string& text, std::string& value) {
    value = text;
    return text.find('\0') == std::string::npos;
}

bool ReadText(const std::string& text, int& value) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && rest == end;
}

bool ReadJson(const Json::Value& json, std::string& value) {
    return json.isString() && ReadText(json.asString(), value);
}

bool ReadJson(const Json::Value& json, int& value) {
    if (!json.isInt()) {
        return false;
    }
    value = json.asInt();
    return true;
}

template <typename T>
APIParameter<T> Checked(T value, bool (*validator)(const T&)) {
    return validator == nullptr || validator(value) ? APIParameter<T>(std::move(value))
                                                    : APIParameter<T>::Unusable();
}

}  // namespace

template <typename T>
APIParameter<T> APIParameterFactoryBasicImpl<T>::FromJson(const Json::Value& params,
                                                          const std::string& key,
                                                          PARAM_NECESSITY /*necessity*/,
                                                          bool (*validator)(const T&)) {
    if (!params.isObject() || !params.isMember(key)) {
        return APIParameter<T>();
    }
    T value{};
    return ReadJson(params[key], value) ? Checked(std::move(value), validator)
                                        : APIParameter<T>::Unusable();
}

template <typename T>
APIParameter<T> APIParameterFactoryBasicImpl<T>::FromText(const std::string& text,
                                                          PARAM_NECESSITY /*necessity*/,
                                                          bool (*validator)(const T&)) {
    T value{};
    return ReadText(text, value) ? Checked(std::move(value), validator)
                                 : APIParameter<T>::Unusable();
}

template class APIParameterFactoryBasicImpl<std::string>;
template class APIParameterFactoryBasicImpl<int>;

}  // namespace MERO
