#pragma once

#include <mailserver-log/db/union_all_select.h>
#include <merodbquery/condition.h>

#include <string>
#include <vector>

#include "process/failure.h"

namespace serverlog::program {

/// In what order a cursor gives rows, and which page of them.
struct RowOrder {
    std::vector<std::string> columns;  ///< each decides what the ones before it left open
    bool ascending = true;
    int offset = 0;
    int limit = -1;  ///< -1 for all
};

/// Reads rows of an open store one by one. Store is a class of stores.h; Fetched is what a row is
/// read into, the store's record or a view of the row. Memory does not grow with the rows.
template <class Store, class Fetched = typename Store::Record>
class RowCursor {
 public:
    /// @param store    must outlive this object, and so must what is attached to it
    /// @param order    its columns are put into SQL as they are, and so are constants
    /// @param schemas  where to look
    ///
    /// Throws soci::soci_error if SQLite refuses.
    RowCursor(typename Store::DB& store, const merodbquery::Condition& condition,
              const RowOrder& order, const std::vector<std::string>& schemas)
        : query_(store.MainTable().UnionStepList(condition, "", "", order.offset, order.limit,
                                                 schemas, row_)) {
        for (const std::string& column : order.columns) {
            query_.OrderBy(column, order.ascending ? db::UnionBase::ASC : db::UnionBase::DESC);
        }
        query_.ExecuteWithoutPreFetch();
    }
    RowCursor(const RowCursor&) = delete;
    RowCursor& operator=(const RowCursor&) = delete;

    /// Goes to the next row, at first to the first one; false behind the last. Throws Failure if
    /// the rows can't be read to the end.
    bool Next() {
        if (query_.Fetch()) {
            return true;
        }
        if (!query_.ErrorText().empty()) {
            throw Failure(query_.ErrorText());
        }
        return false;
    }

    /// The row that Next went to.
    const Fetched& Row() const { return row_; }

 private:
    Fetched row_;  // the query fills it
    db::UnionAllSelectQuery query_;
};

}  // namespace serverlog::program
