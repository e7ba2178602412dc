#pragma once

#include <json/value.h>
#include <mero/api_parameter.h>

#include <string>

namespace MERO {

/// Makes parameters of type T, which is std::string or int. Never throws for what it is given.
///
/// A std::string is any text without a NUL, since the C interfaces that it goes to would read only
/// its beginning; it need not be UTF-8. An int is a whole number in the range of int.
template <typename T>
class APIParameterFactoryBasicImpl {
 public:
    /// Takes a parameter from a JSON object.
    ///
    /// @param params     the parameters; anything but an object holds none
    /// @param key        name of the parameter
    /// @param validator  refuses values by false; null accepts all
    /// @return an unusable parameter when the member has another JSON type (a text that holds a
    ///         number is no int) or `validator` refuses it
    static APIParameter<T> FromJson(const Json::Value& params, const std::string& key,
                                    PARAM_NECESSITY necessity, bool (*validator)(const T&));

    /// Takes a parameter from the text of a form, where numbers are written in decimal with nothing
    /// but a minus sign before them.
    ///
    /// @param text  the value; the other parameters as above
    static APIParameter<T> FromText(const std::string& text, PARAM_NECESSITY necessity,
                                    bool (*validator)(const T&));
};

extern template class APIParameterFactoryBasicImpl<std::string>;
extern template class APIParameterFactoryBasicImpl<int>;

}  // namespace MERO
