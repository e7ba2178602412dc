#pragma once

#include <merodbquery/position_binder.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace merodbquery {

/// What the rows of a query have to fulfil: comparisons of columns with values, joined by "and" and
/// "or". A value class; joining leaves both sides as they are.
///
/// Columns are names of letters, digits and underscores (with a table's name and a point before
/// them, if need be), anything else throws soci::soci_error. Values are bound, never part of the
/// text.
class Condition {
 public:
    /// No restriction: a query with it selects all rows. Joined to another condition it gives that
    /// one.
    static Condition Null() { return Condition(); }

    /// True when `column` holds `text`, without regard to letter case in any script: full Unicode
    /// case folding (ß is SS, final and other sigma are one letter), and the i's with and without
    /// dot are one letter, since the language of a text is not known.
    ///
    /// Every character of `text` stands for itself. Bytes that are not UTF-8 all match each other.
    /// An empty text is in every value; NULL holds nothing, not even the empty text.
    static Condition HasSubstring(const std::string& column, const std::string& text);

    /// `column` equals `value`, which must not be null. NULL equals nothing.
    static Condition Equal(const std::string& column, const char* value);

    /// Compares `column` with `value`.
    ///
    /// @tparam T     std::string or what converts to it, an integer or a floating point number. A
    ///               text compares as a number with a column that is declared as one.
    /// @param column name as above; soci::soci_error for another
    /// @param op     one of "=", "!=", "<>", "<", "<=", ">", ">=", "LIKE", "NOT LIKE";
    ///               soci::soci_error for another
    template <class T>
    static Condition ConditionFactory(const std::string& column, const std::string& op,
                                      const T& value) {
        if constexpr (std::is_integral_v<T>) {
            return Compare(column, op, BoundValue(static_cast<long long>(value)));
        } else if constexpr (std::is_floating_point_v<T>) {
            return Compare(column, op, BoundValue(static_cast<double>(value)));
        } else {
            return Compare(column, op, BoundValue(std::string(value)));
        }
    }

    /// False for Null() and what is joined of nothing else.
    bool IsSet() const { return !terms_.empty(); }

    /// Both conditions; with an empty side, the other one.
    Condition operator&&(const Condition& other) const;

    /// Any of the conditions; with an empty side, the other one.
    Condition operator||(const Condition& other) const;

    /// The SQL text, with a placeholder for each value, empty when not set. Adds the values to
    /// `binder` in the order of the placeholders.
    std::string GetExpression(PositionBinder& binder) const;

 private:
    static Condition Compare(const std::string& column, const std::string& op, BoundValue value);
    static Condition Single(std::string expression, BoundValue value);

    Condition JoinedWith(const Condition& other, const char* joint) const;
    std::string Text() const;

    // Terms are kept apart until the text is wanted, so that a disjunction of hundreds of them
    // nests only as deep as SQLite's parser allows.
    std::vector<std::string> terms_;
    const char* joint_ = nullptr;
    std::vector<BoundValue> values_;
};

}  // namespace merodbquery
