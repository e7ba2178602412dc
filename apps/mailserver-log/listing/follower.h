#pragma once

#include <algorithm>
#include <chrono>
#include <iostream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "listing/added_rows.h"
#include "listing/row_cursor.h"
#include "listing/selected_rows.h"
#include "listing/selection.h"
#include "output/record_writer.h"
#include "output/standard_output.h"
#include "process/failure.h"
#include "process/stop_signal.h"
#include "stores/transaction.h"

namespace serverlog::program {

/// Shows the latest rows of a selection, the oldest first, and then each one that is added to the
/// store, in the order of adding. Store is a class of stores.h.
template <class Store>
class Follower {
 public:
    /// @param selection  its order, offset and file have no effect. Without a limit and a first
    ///                   time it begins with the last ten rows
    /// @param writer     gets the records, and writes them to `out`. All must outlive this object
    Follower(const Selection& selection, RecordWriter<Store>& writer, std::ostream& out)
        : selection_(selection),
          condition_(StoreCondition<Store>(selection)),
          writer_(writer),
          out_(out) {
        selection_.ascending = selection_.limit < 0 && !selection_.since.empty();
        if (selection_.limit < 0 && !selection_.ascending) {
            selection_.limit = kRowsAtFirst;
        }
    }

    /// Works until SIGINT or SIGTERM comes or `out` fails. Throws Failure if the store can't be
    /// read at first; later it tries again. Throws ReaderGone if nobody reads standard output any
    /// more.
    void Run() {
        const StopSignal stop;
        ShowLatest();
        while (Deliver() && !stop.Requested()) {
            if (!TryPoll()) {
                stop.Wait(-1, kInterval);
            }
        }
    }

 private:
    using Record = typename Store::Record;

    static constexpr int kRowsAtFirst = 10;
    static constexpr int kBatch = 1000;
    static constexpr std::chrono::milliseconds kInterval{300};

    bool Deliver() {
        writer_.Flush();
        out_.flush();
        if (ReaderHasGone()) {
            throw ReaderGone();
        }
        return out_.good();
    }

    void ShowLatest() {
        rows_.emplace(selection_);
        added_rows_.emplace(rows_->Opened().RotateTable());
        std::vector<Record> latest;
        {
            // No row may be in neither or both of the two reads.
            const Transaction picture(Session(), Transaction::Use::kRead);
            rows_->ForEachRecord([&](const Record& record) {
                if (selection_.ascending) {
                    writer_.Write(record);
                } else {
                    latest.push_back(record);
                }
                return out_.good();
            });
            added_rows_->SkipAll(Session());
        }
        std::for_each(latest.rbegin(), latest.rend(),
                      [this](const Record& record) { writer_.Write(record); });
    }

    // A store that is locked, or whose file is being replaced, is as good as one without news; only
    // if that lasts there is something to tell.
    bool TryPoll() {
        try {
            const bool has_more = Poll();
            failures_ = 0;
            return has_more;
        } catch (...) {
            if (++failures_ == 2) {
                std::cerr << "mailserver-log: cannot read " << Store::kPath << ": "
                          << DescribeException() << "; trying again until it works" << std::endl;
            }
            // An empty file, which the session makes where it finds none, has to be opened as a
            // new store.
            if (rows_ && (!Session().Good() || rows_->Opened().GetVersion() == 0)) {
                rows_.reset();
            }
            return false;
        }
    }

    // Shows what was added since the last time; whether there may be more at once.
    bool Poll() {
        if (!rows_) {
            rows_.emplace(selection_);
        }
        // Lost with each reopening. Short, so that a request to stop is seen.
        Session().RawQuery("PRAGMA busy_timeout = 1000");
        std::vector<AddedRows::Place> added;
        std::vector<Record> records;
        {
            const Transaction picture(Session(), Transaction::Use::kRead);
            added = added_rows_->Read(Session(), kBatch);
            if (!added.empty()) {
                records = ReadRecords(added_rows_->last(), added.back().rowid);
            }
        }
        added_rows_->Remember(added);
        for (const Record& record : records) {
            writer_.Write(record);
        }
        return added.size() == kBatch;
    }

    // The rows of the selection behind `last` and up to `end`.
    std::vector<Record> ReadRecords(long long last, long long end) {
        using merodbquery::Condition;
        RowCursor<Store> rows(rows_->Opened(),
                              condition_ && Condition::ConditionFactory("rowid", ">", last) &&
                                  Condition::ConditionFactory("rowid", "<=", end),
                              {{"rowid"}}, {"main"});
        std::vector<Record> records;
        while (rows.Next()) {
            records.push_back(rows.Row());
        }
        return records;
    }

    merodbquery::Session& Session() { return rows_->Opened().GetSession(); }

    Selection selection_;
    merodbquery::Condition condition_;
    RecordWriter<Store>& writer_;
    std::ostream& out_;
    std::optional<SelectedRows<Store>> rows_;  // empty while the store has to be opened again
    std::optional<AddedRows> added_rows_;      // from the first look at the store on
    int failures_ = 0;
};

}  // namespace serverlog::program
