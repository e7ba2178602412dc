#pragma once

#include <mailserver-log/db/select_query_expose.h>
#include <mailserver-log/db/union_base.h>
#include <mailserver-log/export.h>
#include <merodbquery/conditional_query.h>
#include <merodbquery/session.h>

#include <memory>
#include <string>
#include <vector>

namespace serverlog::db {

namespace internal {
class SpanWalk;
}  // namespace internal

/// One result of several selects over tables of the same shape: the selects joined by UNION ALL,
/// with one order, limit and offset for all.
///
/// Bind a soci::into, add selects and clauses, call ExecuteWithoutPreFetch, then Fetch until it is
/// false.
///
/// All rows without a condition, ordered by one column, are read in several statements where that
/// is faster. They are the same rows in the same order, and of one picture of the files: a
/// transaction is open on the session from the first row until the last, or the object's end.
class MAILSERVER_LOG_EXPORT UnionAllSelectQuery : public merodbquery::ConditionalQuery,
                                                  public UnionBase {
 public:
    /// @param session  copied, and so need not outlive this object
    explicit UnionAllSelectQuery(const merodbquery::Session& session);

    ~UnionAllSelectQuery() override;

    /// Only before it is executed.
    UnionAllSelectQuery(UnionAllSelectQuery&& other) noexcept;

    /// Adds a select with its condition. The select may be destroyed afterwards.
    void UnionAll(SelectQueryExpose& select);

    /// The whole statement; empty without a select.
    std::string GetQuery() override;

    bool IsFetchingDataQuery() const override;

    bool Execute() override;

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
    std::unique_ptr<internal::SpanWalk> BeginWalk() const;
    void EndWalk();

    merodbquery::Session session_;
    std::vector<std::string> selects_;
    std::vector<std::string> tables_;           // of each of them
    bool may_walk_ = false;                     // until the first Fetch behind a run
    std::unique_ptr<internal::SpanWalk> walk_;  // what Fetch reads from, if there is one
};

}  // namespace serverlog::db
