#pragma once

#include <merodbquery/query.h>

#include <string>
#include <vector>

namespace merodbquery {

/// Adds one row to a table. Bind the record with soci::use and Execute(): that is true when the row
/// stands in the table, false with the reason in ErrorText() when not.
///
/// The statement stays prepared with the session: keep the object and bind the next record for the
/// next row. It finds a moved file as any other query does.
class InsertQuery : public Query {
 public:
    /// @param table  as ConditionalQuery takes it
    InsertQuery(const Session& session, std::string table);

    /// Names the columns; each takes the value of that name of the bound record.
    void SetInsertAll(const std::vector<std::string>& columns) {
        columns_ = columns;
        text_.clear();
    }

    bool Execute() override;

    /// soci::soci_error for a table or a column whose name holds anything but letters, digits and
    /// underscores.
    std::string GetQuery() override;
    bool IsFetchingDataQuery() const override { return false; }

 private:
    std::string table_;
    std::vector<std::string> columns_;
    std::string text_;  // composed for the first run
};

}  // namespace merodbquery
