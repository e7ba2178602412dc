#pragma once

#include <mailserver-log/db/select_query_expose.h>
#include <mailserver-log/db/union_base.h>
#include <mailserver-log/export.h>
#include <merodbquery/conditional_query.h>
#include <merodbquery/session.h>

#include <string>
#include <vector>

namespace serverlog::db {

/// One result of several selects over tables of the same shape: the selects joined by UNION ALL,
/// with one order, limit and offset for all.
///
/// Bind a soci::into, add selects and clauses, call ExecuteWithoutPreFetch, then Fetch until it is
/// false. The object may be moved or copied only before it is executed.
class MAILSERVER_LOG_EXPORT UnionAllSelectQuery : public merodbquery::ConditionalQuery,
                                                  public UnionBase {
 public:
    /// @param session  copied, and so need not outlive this object
    explicit UnionAllSelectQuery(const merodbquery::Session& session);

    /// Adds a select with its condition. The select may be destroyed afterwards.
    void UnionAll(SelectQueryExpose& select);

    /// The whole statement; empty without a select.
    std::string GetQuery() override;

    bool IsFetchingDataQuery() const override;

    /// Prepares the statement and runs it without fetching a row.
    /// Throws soci::soci_error if SQLite refuses it.
    void ExecuteWithoutPreFetch();

    /// Fetches the next row into what is bound.
    ///
    /// False at the end of the rows, if the query was not executed, and after an error, which
    /// writes an error line and is kept as the query's error text. Never throws, so a failure in
    /// the middle looks like a shorter result.
    bool Fetch();

 private:
    std::vector<std::string> selects_;
};

}  // namespace serverlog::db
