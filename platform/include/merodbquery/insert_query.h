#pragma once

#include <merodbquery/query.h>

#include <string>
#include <vector>

namespace merodbquery {

/// Adds one row to a table. Bind the record with soci::use and Execute(): that is true when the row
/// stands in the table, false with the reason in ErrorText() when not.
class InsertQuery : public Query {
 public:
    /// @param table  as ConditionalQuery takes it
    InsertQuery(const Session& session, std::string table);

    /// Names the columns; each takes the value of that name of the bound record.
    void SetInsertAll(const std::vector<std::string>& columns) { columns_ = columns; }

    /// soci::soci_error for a table or a column whose name holds anything but letters, digits and
    /// underscores.
    std::string GetQuery() override;
    bool IsFetchingDataQuery() const override { return false; }

 private:
    std::string table_;
    std::vector<std::string> columns_;
};

}  // namespace merodbquery
