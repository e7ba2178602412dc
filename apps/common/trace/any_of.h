#pragma once

#include <merodbquery/condition.h>

#include <string>

namespace serverlog::program {

/// That the column is one of the texts, with regard to letter case. Not set without a text.
///
/// @tparam Texts  a container of std::string
template <class Texts>
merodbquery::Condition AnyOf(const std::string& column, const Texts& texts) {
    merodbquery::Condition condition = merodbquery::Condition::Null();
    for (const std::string& text : texts) {
        condition = condition || merodbquery::Condition::ConditionFactory(column, "=", text);
    }
    return condition;
}

}  // namespace serverlog::program
