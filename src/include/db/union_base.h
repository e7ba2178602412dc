#pragma once

#include <mailserver-log/export.h>
#include <merodbquery/condition.h>
#include <merodbquery/position_binder.h>

#include <optional>
#include <string>
#include <vector>

namespace serverlog::db {

/// The clauses that stand once, behind the last select of a union, and apply to the whole of it.
class MAILSERVER_LOG_EXPORT UnionBase {
 public:
    /// The direction of a term of order.
    enum Order { ASC = 0, DESC = 1 };

    /// A term of order.
    struct Term {
        std::string field;  ///< a column's name
        Order order;        ///< its direction
    };

    /// Appends a term of order; earlier calls weigh more.
    /// @param field  a column's name; put into SQL as it is, so never from outside
    virtual void OrderBy(std::string field, Order order);
    virtual ~UnionBase() = default;

    /// @param group  the text behind GROUP BY; put into SQL as it is
    void GroupBy(std::string group);

    /// @param limit  the most rows to give; a negative value means all
    void Limit(int limit);

    /// @param offset  the number of rows to skip; a negative value means none
    void Offset(int offset);

    /// Replaces the condition on groups.
    void Having(const merodbquery::Condition& having);

    /// The text of the clauses, which begins with a blank unless it is empty.
    ///
    /// @param condition  the conjunction of the selects' conditions. Their texts stand in the
    /// selects
    ///                   already; here it only registers its values
    /// @param binder     takes the values in the order of their placeholders
    std::string ComposeQuery(const merodbquery::Condition& condition,
                             merodbquery::PositionBinder& binder) const;

 protected:
    /// The term of order where there is one, and no other clause; otherwise nothing.
    std::optional<Term> OnlyTerm() const;

 private:
    static constexpr int kNoLimit = -1;

    std::string group_;
    int limit_ = kNoLimit;
    int offset_ = 0;
    std::vector<std::string> orders_;
    merodbquery::Condition having_ = merodbquery::Condition::Null();
};

}  // namespace serverlog::db
