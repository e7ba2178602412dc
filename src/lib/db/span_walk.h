#pragma once

#include <mailserver-log/db/union_base.h>
#include <merodbquery/query.h>
#include <merodbquery/session.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "db/page_queries.h"
#include "db/read_transaction.h"

namespace serverlog::db::internal {

/// One of the selects of a union, without any clause.
struct UnitedSelect {
    std::string text;
    std::string schema;
    std::string table;
};

/// Reads all rows of a union ordered by one column, exactly in the order of the plain statement but
/// span by span: each the rows with the next values of the column, some thousand, read by the
/// cheapest statement that gives just them.
///
/// - Rows that stand in their table in the order of the column, as those of a log do, are read
///   along the table. The plain statement walks along the index and looks each row up, which takes
///   half as long again.
/// - Where only one table has rows nothing is merged, which saves a tenth.
/// - Any other span is read by the plain statement with the bounds of the span.
///
/// It holds a transaction until the last row, so that all spans come from one picture of the files.
class SpanWalk {
 public:
    /// A walk that fetches into what is bound to `bound`. Empty where there are too few rows to be
    /// worth it, or rows that are not in an index of the column.
    ///
    /// @param order  the union's only clause
    /// Throws soci::soci_error when a table can't be read.
    static std::unique_ptr<SpanWalk> Begin(const merodbquery::Session& session,
                                           std::vector<UnitedSelect> selects,
                                           const UnionBase::Term& order,
                                           const merodbquery::Query& bound);

    /// Fetches the next row. False behind the last, and when a row can't be fetched, which leaves
    /// a text in ErrorText(). Throws soci::soci_error when the next span can't be read.
    bool Fetch();

    /// Why Fetch gave false; empty at the end of the rows.
    const std::string& ErrorText() const { return span_->ErrorText(); }

 private:
    SpanWalk(const merodbquery::Session& session, std::vector<UnitedSelect> selects,
             const UnionBase::Term& order, const merodbquery::Query& bound);

    bool IsWorthIt();
    bool BeginSpan();
    std::optional<long long> EndOfSpan();
    std::string SpanText();
    std::string RunText(const UnitedSelect& select);
    std::string OrderedBy(const std::string& column) const;
    std::string Where() const;

    merodbquery::Session session_;
    std::vector<UnitedSelect> selects_;
    std::string column_;
    bool descending_;
    std::optional<ReadTransaction> picture_;
    std::unique_ptr<PageQuery> span_;
    // The values of the span's rows, in the order of the walk. Nothing is an open side.
    std::optional<long long> begin_;  // excluded
    std::optional<long long> end_;    // included
    bool is_last_ = false;
    int skipped_ = 0;  // how many spans were read without a look for a run after the last look
    int to_skip_ = 0;  // how many more will be
};

}  // namespace serverlog::db::internal
