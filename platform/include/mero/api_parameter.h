#pragma once

#include <utility>

namespace MERO {

/// Whether a call has to bring a parameter along. The library asks for nothing but optional ones.
enum PARAM_NECESSITY : int {
    PARAM_OPTIONAL = 0,  ///< the key may be missing
};

/// One parameter of a call as it was found: missing, unusable, or a value of type T.
template <typename T>
class APIParameter {
 public:
    /// A parameter whose key is missing.
    APIParameter() = default;

    /// A parameter that has a value.
    explicit APIParameter(T value) : value_(std::move(value)), set_(true), valid_(true) {}

    /// A parameter whose key is there with something that is no T, or that a validator refused.
    static APIParameter Unusable() {
        APIParameter parameter;
        parameter.set_ = true;
        return parameter;
    }

    /// True when the key is missing or what it holds is unusable.
    bool IsInvalid() const { return !valid_; }

    /// True when the key is there.
    bool IsSet() const { return set_; }

    /// The value; a default one when IsInvalid(). Valid as long as this object.
    const T& Get() const { return value_; }

 private:
    T value_{};
    bool set_ = false;
    bool valid_ = false;
};

}  // namespace MERO
