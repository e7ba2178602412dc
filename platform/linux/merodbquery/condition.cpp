#include <merodbquery/condition.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "merodbquery/sql_text.h"
#include "merodbquery/substring_function.h"

namespace merodbquery {
namespace {

constexpr char kAnd[] = " AND ";
constexpr char kOr[] = " OR ";

constexpr std::array<std::string_view, 9> kOperators = {
    "=", "!=", "<>", "<", "<=", ">", ">=", "LIKE", "NOT LIKE"};

const std::string& CheckedOperator(const std::string& op) {
    if (std::find(kOperators.begin(), kOperators.end(), op) == kOperators.end()) {
        throw soci::soci_error("not an operator for a condition: \"" + op + "\"");
    }
    return op;
}

// Halves the terms again and again: a chain of n terms is n deep for SQLite, this is log2(n) deep.
std::string Balanced(const std::vector<std::string>& terms, const char* joint, std::size_t begin,
                     std::size_t end) {
    if (end - begin == 1) {
        return terms[begin];
    }
    const std::size_t middle = begin + (end - begin) / 2;
    return "(" + Balanced(terms, joint, begin, middle) + joint +
           Balanced(terms, joint, middle, end) + ")";
}

}  // namespace

Condition Condition::HasSubstring(const std::string& column, const std::string& text) {
    return Single(std::string(kSubstringFunction) + "(" + CheckedName(column) + ", ?)", text);
}

Condition Condition::Equal(const std::string& column, const char* value) {
    return Compare(column, "=", std::string(value));
}

Condition Condition::Compare(const std::string& column, const std::string& op, BoundValue value) {
    return Single(CheckedName(column) + " " + CheckedOperator(op) + " ?", std::move(value));
}

Condition Condition::Single(std::string expression, BoundValue value) {
    Condition condition;
    condition.terms_.push_back(std::move(expression));
    condition.values_.push_back(std::move(value));
    return condition;
}

Condition Condition::operator&&(const Condition& other) const {
    return JoinedWith(other, kAnd);
}

Condition Condition::operator||(const Condition& other) const {
    return JoinedWith(other, kOr);
}

Condition Condition::JoinedWith(const Condition& other, const char* joint) const {
    if (!IsSet()) {
        return other;
    }
    if (!other.IsSet()) {
        return *this;
    }
    Condition joined;
    joined.joint_ = joint;
    for (const Condition* side : {this, &other}) {
        if (side->terms_.size() == 1 || side->joint_ == joint) {
            joined.terms_.insert(joined.terms_.end(), side->terms_.begin(), side->terms_.end());
        } else {
            joined.terms_.push_back(side->Text());
        }
        joined.values_.insert(joined.values_.end(), side->values_.begin(), side->values_.end());
    }
    return joined;
}

std::string Condition::Text() const {
    return IsSet() ? Balanced(terms_, joint_, 0, terms_.size()) : std::string();
}

std::string Condition::GetExpression(PositionBinder& binder) const {
    for (const BoundValue& value : values_) {
        binder.Add(value);
    }
    return Text();
}

}  // namespace merodbquery
