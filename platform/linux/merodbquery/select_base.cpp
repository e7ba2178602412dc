#include <merodbquery/select_base.h>

#include "merodbquery/sql_text.h"

namespace merodbquery {

void SelectBase::OrderBy(const std::string& field, Order order) {
    order_terms_.push_back(CheckedName(field) + (order == ASC ? " ASC" : " DESC"));
}

std::string SelectBase::ComposeQuery(const std::string& table, const Condition& condition,
                                     PositionBinder& binder) const {
    std::string text = "SELECT " + (columns_.empty() ? "*" : Joined(columns_, ", ")) + " FROM " +
                       CheckedName(table);
    if (condition.IsSet()) {
        text += " WHERE " + condition.GetExpression(binder);
    }
    if (!order_terms_.empty()) {
        text += " ORDER BY " + Joined(order_terms_, ", ");
    }
    if (limit_ >= 0) {
        text += " LIMIT " + std::to_string(limit_);
    }
    return text;
}

}  // namespace merodbquery
