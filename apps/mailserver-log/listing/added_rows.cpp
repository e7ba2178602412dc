#include "listing/added_rows.h"

#include <soci/soci.h>

namespace serverlog::program {

void AddedRows::SkipAll(merodbquery::Session& session) {
    known_.clear();
    soci::session& sql = session.GetRawSession();
    long long last = 0;
    sql << "SELECT coalesce(max(rowid), 0) FROM " + table_, soci::into(last);
    Place place = {};
    // In the order of the index on dates; most often the first row is the last one already.
    soci::statement select =
        (sql.prepare << "SELECT rowid, date FROM " + table_ + " ORDER BY date DESC, rowid DESC",
         soci::into(place.rowid), soci::into(place.date));
    select.execute();
    while (this->last() < last && select.fetch()) {
        if (place.rowid > this->last()) {
            known_.push_back(place);
        }
    }
}

std::vector<AddedRows::Place> AddedRows::Read(merodbquery::Session& session, int most) {
    while (!known_.empty() && !IsThere(session, known_.back())) {
        known_.pop_back();
    }
    std::vector<Place> places;
    Place place = {};
    const long long behind = last();
    soci::statement select =
        (session.GetRawSession().prepare << "SELECT rowid, date FROM " + table_ +
                                                " WHERE rowid > :behind ORDER BY rowid LIMIT :most",
         soci::use(behind), soci::use(most), soci::into(place.rowid), soci::into(place.date));
    select.execute();
    while (select.fetch()) {
        places.push_back(place);
    }
    return places;
}

void AddedRows::Remember(const std::vector<Place>& places) {
    for (const Place& place : places) {
        while (!known_.empty() && known_.back().date <= place.date) {
            known_.pop_back();
        }
        known_.push_back(place);
    }
}

bool AddedRows::IsThere(merodbquery::Session& session, const Place& place) const {
    int count = 0;
    session.GetRawSession() << "SELECT count(*) FROM " + table_ +
                                   " WHERE rowid = :rowid AND date = :date",
        soci::use(place.rowid), soci::use(place.date), soci::into(count);
    return count > 0;
}

}  // namespace serverlog::program
