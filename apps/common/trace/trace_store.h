#pragma once

#include <mailserver-log/record/columns.h>
#include <merodbquery/condition.h>

#include <optional>

#include "listing/read_guarded.h"
#include "listing/row_cursor.h"
#include "stores/long_term_file.h"
#include "stores/opened_store.h"
#include "stores/transaction.h"

namespace serverlog::program {

/// A store and its long-term file, open for tracing. Store is a class of stores.h. All searches see
/// one picture of the two, so that no row is lost or doubled by what happens between them.
template <class Store>
class TraceStore {
 public:
    /// Throws Failure if a file can't be opened.
    TraceStore()
        : store_(Store::kPath),
          long_term_(AttachLongTermFile(store_)),
          picture_(store_.Get().GetSession(), Transaction::Use::kRead) {}

    /// The rows that match, in any order: SQLite then reads the file from its beginning to its end
    /// where it has no index, and not in the order of dates. Valid as long as this object.
    ///
    /// Throws Failure if they can't be read.
    RowCursor<Store> Find(const merodbquery::Condition& condition) { return Read(condition, {{}}); }

    /// The same by date; rows of one date in the order of their other columns. The size of a mail
    /// comes first of those, and it grows with each hop.
    RowCursor<Store> FindByDate(const merodbquery::Condition& condition) {
        return Read(condition, {record::ColumnNames<typename Store::Record>()});
    }

    /// Goes to the next row. Throws Failure if the rows can't be read to the end.
    static bool Next(RowCursor<Store>& rows) {
        return ReadGuarded(Store::kPath, [&rows] { return rows.Next(); });
    }

 private:
    RowCursor<Store> Read(const merodbquery::Condition& condition, const RowOrder& order) {
        return ReadGuarded(Store::kPath, [&] {
            return RowCursor<Store>(store_.Get(), condition, order, store_.Get().Schemas());
        });
    }

    OpenedStore<Store> store_;
    std::optional<AttachedFile> long_term_;
    Transaction picture_;
};

}  // namespace serverlog::program
