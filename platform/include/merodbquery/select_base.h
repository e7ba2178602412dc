#pragma once

#include <merodbquery/condition.h>

#include <string>
#include <utility>
#include <vector>

namespace merodbquery {

/// The clauses of one select.
class SelectBase {
 public:
    /// The direction of a term of order, with the numbers that the interface fixes.
    enum Order : int { ASC = 0, DESC = 1 };

    virtual ~SelectBase() = default;

    /// Replaces the columns: SQL expressions such as "COUNT(*)", constants of the program and never
    /// from outside. None, as at first, selects all columns of the table.
    void SetColumns(std::vector<std::string> columns) { columns_ = std::move(columns); }

    /// Adds a term to the order, behind those of earlier calls. `field` is a column's name as in
    /// Condition; soci::soci_error for another.
    void OrderBy(const std::string& field, Order order);

    /// At most this many rows; a negative number, as at first, means all.
    void Limit(int limit) { limit_ = limit; }

    /// The text of the select.
    ///
    /// @param table      as ConditionalQuery takes it; soci::soci_error for another
    /// @param condition  gives the where clause when it is set
    /// @param binder     gets the values of the condition
    std::string ComposeQuery(const std::string& table, const Condition& condition,
                             PositionBinder& binder) const;

 private:
    std::vector<std::string> columns_;
    std::vector<std::string> order_terms_;
    int limit_ = -1;
};

}  // namespace merodbquery
