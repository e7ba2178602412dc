#pragma once

#include <merodbquery/condition.h>
#include <merodbquery/query.h>

#include <string>

namespace merodbquery {

/// A query on the rows of one table that fulfil a condition.
class ConditionalQuery : public Query {
 public:
    /// @param table  name of letters, digits and underscores, with a schema's name and a point
    ///               before it if need be; looked at when the statement is composed
    ConditionalQuery(const Session& session, std::string table);

    /// Replaces the condition; Condition::Null() at first.
    void Where(const Condition& condition) { condition_ = condition; }

    /// What Where was given last.
    const Condition& GetCondition() const { return condition_; }

    /// As it was given.
    const std::string& GetTable() const { return table_; }

 private:
    std::string table_;
    Condition condition_;
};

}  // namespace merodbquery
