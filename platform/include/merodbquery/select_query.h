#pragma once

#include <merodbquery/conditional_query.h>
#include <merodbquery/select_base.h>

#include <string>

namespace merodbquery {

/// Reads the rows of one table.
///
/// The same object can be used again with other columns: SetColumns, Bind of new into elements,
/// which replace those of the former run, and the next run.
class SelectQuery : public ConditionalQuery, public SelectBase {
 public:
    /// @param table  as ConditionalQuery takes it
    SelectQuery(const Session& session, std::string table);

    std::string GetQuery() override;
    bool IsFetchingDataQuery() const override { return true; }

    /// Runs the query; the first row is left to Fetch. Throws as PrepareAndExecute does.
    void ExecuteWithoutPreFetch();

    /// Takes the next row into the bound objects. False at the end, and when the query was not run
    /// or the session is not good. soci::soci_error and what the bound objects' conversions throw
    /// pass on.
    bool Fetch() { return FetchNext(); }
};

}  // namespace merodbquery
