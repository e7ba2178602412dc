#pragma once

#include <soci/soci.h>

#include <deque>
#include <string>
#include <utility>
#include <variant>

namespace merodbquery {

/// Kinds of database, with the numbers that the interface fixes.
enum class DatabaseKind : int { kSQLite = 2 };

/// A value on its way into a statement.
using BoundValue = std::variant<std::string, long long, double>;

/// Collects the values of a statement in the order in which its anonymous placeholders ("?") stand
/// in the text.
class PositionBinder {
 public:
    /// @param kind  the kind of database that the statement is for
    explicit PositionBinder(DatabaseKind kind = DatabaseKind::kSQLite) : kind_(kind) {}

    /// As it was given.
    DatabaseKind GetKind() const { return kind_; }

    /// Takes over `value` as that of the next placeholder.
    void Add(BoundValue value) { values_.push_back(std::move(value)); }

    /// The number of values collected so far.
    std::size_t Size() const { return values_.size(); }

    /// Drops all values. No statement that they were bound to may run afterwards.
    void Clear() { values_.clear(); }

    /// Binds all values to `statement`, behind the use elements that it already has. The binder
    /// keeps the values and has to outlive the running of the statement; it may be moved meanwhile.
    void BindTo(soci::statement& statement) const;

 private:
    DatabaseKind kind_;
    // A deque, so that values stay in place while more are added: statements point at them.
    std::deque<BoundValue> values_;
};

}  // namespace merodbquery
