#pragma once

#include <merodbquery/session.h>

#include <string>
#include <utility>
#include <vector>

namespace serverlog::program {

/// Finds the rows that were added to a table, by the numbers that SQLite gives them (rowid).
///
/// A new row stands behind the last one that is there. Rotation removes old rows, and the numbers
/// of the last ones may then be given again: so what counts is the last of the known rows that are
/// still there. Which one that will be depends only on the date up to which rows are removed, so
/// it is one behind which no row has a later date; those are kept, which are few.
class AddedRows {
 public:
    /// Where a row stands.
    struct Place {
        long long rowid;
        long long date;
    };

    /// The functions that get a session read its main schema, and are to be called in a
    /// transaction together with other reads of the rows. They throw soci::soci_error if the table
    /// can't be read.
    ///
    /// @param table  with the columns of a store's main table; a constant
    explicit AddedRows(std::string table) : table_("main." + std::move(table)) {}

    /// Takes all rows that are there for known.
    void SkipAll(merodbquery::Session& session);

    /// The rows behind the known ones, in their order.
    /// @param most  at most so many
    std::vector<Place> Read(merodbquery::Session& session, int most);

    /// The number behind which Read looked.
    long long last() const { return known_.empty() ? 0 : known_.back().rowid; }

    /// Takes rows that Read gave for known.
    void Remember(const std::vector<Place>& places);

 private:
    bool IsThere(merodbquery::Session& session, const Place& place) const;

    std::string table_;
    std::vector<Place> known_;  // with growing numbers and falling dates
};

}  // namespace serverlog::program
