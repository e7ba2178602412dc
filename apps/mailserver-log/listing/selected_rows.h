#pragma once

#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/row_view.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "listing/read_guarded.h"
#include "listing/row_cursor.h"
#include "listing/selection.h"
#include "process/failure.h"
#include "stores/attached_file.h"
#include "stores/long_term_file.h"
#include "stores/opened_store.h"

namespace serverlog::program {

/// The rows of a selection, read from the store together with its long-term file or from the one
/// file that was asked for. Store is a class of stores.h.
template <class Store>
class SelectedRows {
 public:
    using Record = typename Store::Record;

    /// @param selection  must outlive this object
    ///
    /// Throws CLI::ValidationError if the selection is none for this store, Failure if a file can't
    /// be opened.
    explicit SelectedRows(const Selection& selection)
        : selection_(selection),
          condition_(CheckedCondition(selection)),
          path_(Path(selection)),
          store_(path_),
          // Any other file is read alone.
          long_term_(selection.file.empty() ? AttachLongTermFile(store_) : std::nullopt) {}

    /// The number of rows, without regard to limit and offset. Throws Failure if they can't be
    /// read.
    std::uint64_t Count() {
        return ReadGuarded(path_, [this] {
            return std::get<0>(store_.Get().MainTable().UnionList(condition_, "", "", 0, 0,
                                                                  store_.Get().Schemas()));
        });
    }

    /// The store itself; valid as long as this object.
    typename Store::DB& Opened() { return store_.Get(); }

    ///@{
    /// Calls `visit(row)` for each row, with a view of it or a record, until that returns false.
    /// Memory does not grow with the rows. Throws Failure if they can't be read to the end; `visit`
    /// must not throw.
    template <class Visit>
    void ForEach(Visit visit) {
        Read<record::RowView<Record>>(visit);
    }
    template <class Visit>
    void ForEachRecord(Visit visit) {
        Read<Record>(visit);
    }
    ///@}

 private:
    template <class Fetched, class Visit>
    void Read(Visit& visit) {
        ReadGuarded(path_, [&] {
            RowCursor<Store, Fetched> rows(
                store_.Get(), condition_,
                {{selection_.sort}, selection_.ascending, selection_.offset, selection_.limit},
                store_.Get().Schemas());
            while (rows.Next()) {
                if (!visit(rows.Row())) {
                    return;
                }
            }
        });
    }

    static merodbquery::Condition CheckedCondition(const Selection& selection) {
        CheckSort(selection, record::ColumnNames<Record>());
        return StoreCondition<Store>(selection);
    }

    static std::string Path(const Selection& selection) {
        if (selection.file.empty()) {
            return Store::kPath;
        }
        // A path below the folder of the stores would be made a store.
        if (!std::filesystem::exists(selection.file)) {
            throw Failure("there is no file " + selection.file + "; check its name");
        }
        return std::filesystem::absolute(selection.file).string();
    }

    const Selection& selection_;
    merodbquery::Condition condition_;
    std::string path_;
    OpenedStore<Store> store_;
    std::optional<AttachedFile> long_term_;
};

}  // namespace serverlog::program
