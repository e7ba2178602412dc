#include "db/span_walk.h"

#include <soci/soci.h>

#include <algorithm>
#include <utility>

#include "db/run_function.h"
#include "db/sort_order.h"
#include "utils/strings.h"

namespace serverlog::db::internal {

namespace {

// The statements of a span take 0.1 ms beside the 10 ms of its rows. In a longer one a single row
// out of its order would make more rows slow.
constexpr int kRowsOfSpan = 16'384;

// Looking for a run takes a tenth of the time of reading the rows. Where there was none there is
// hardly one in the next spans.
constexpr int kMostSkipped = 31;

std::string TableOf(const UnitedSelect& select) {
    return select.schema + "." + select.table;
}

std::optional<long long> Number(merodbquery::Session& session, const std::string& select) {
    long long number = 0;
    soci::session& raw = session.GetRawSession();
    raw << select, soci::into(number);
    return raw.got_data() ? std::optional(number) : std::nullopt;
}

}  // namespace

SpanWalk::SpanWalk(const merodbquery::Session& session, std::vector<UnitedSelect> selects,
                   const UnionBase::Term& order, const merodbquery::Query& bound)
    : session_(session),
      selects_(std::move(selects)),
      column_(order.field),
      descending_(order.order == UnionBase::DESC),
      span_(std::make_unique<PageQuery>(session_, "", merodbquery::Condition::Null(), 0)) {
    picture_.emplace(session_);
    span_->BindAs(bound);
}

std::unique_ptr<SpanWalk> SpanWalk::Begin(const merodbquery::Session& session,
                                          std::vector<UnitedSelect> selects,
                                          const UnionBase::Term& order,
                                          const merodbquery::Query& bound) {
    // The constructor can be reached from here only.
    std::unique_ptr<SpanWalk> walk(new SpanWalk(session, std::move(selects), order, bound));
    if (!walk->IsWorthIt()) {
        return nullptr;
    }
    RegisterRunFunction(walk->session_);
    return walk;
}

bool SpanWalk::IsWorthIt() {
    const bool can_walk =
        std::all_of(selects_.begin(), selects_.end(), [this](const UnitedSelect& select) {
            return !IndexFor(session_, select.schema, select.table, column_).empty() &&
                   !HasNull(session_, TableOf(select), column_);
        });
    return can_walk && EndOfSpan();
}

bool SpanWalk::Fetch() {
    while (!span_->Fetch()) {
        if (!span_->ErrorText().empty() || !BeginSpan()) {
            return false;
        }
    }
    return true;
}

bool SpanWalk::BeginSpan() {
    if (is_last_) {
        picture_.reset();
        return false;
    }
    begin_ = std::exchange(end_, std::nullopt);
    end_ = EndOfSpan();
    is_last_ = !end_;
    auto next =
        std::make_unique<PageQuery>(session_, SpanText(), merodbquery::Condition::Null(), 0);
    next->BindAs(*span_);
    next->ExecuteWithoutPreFetch();
    span_ = std::move(next);
    return true;
}

// The value at which the first table has a span full of rows, all of that value included. Without
// one the span is the last.
std::optional<long long> SpanWalk::EndOfSpan() {
    const auto precedes = [this](long long a, long long b) { return descending_ ? a > b : a < b; };
    std::optional<long long> end;
    for (const UnitedSelect& select : selects_) {
        const auto value = Number(session_, "SELECT " + column_ + " FROM " + TableOf(select) +
                                                Where() + OrderedBy(column_) + " LIMIT 1 OFFSET " +
                                                std::to_string(kRowsOfSpan));
        if (value && (!end || precedes(*value, *end))) {
            end = value;
        }
    }
    // A value that is no whole number, among them, could be read as one that does not lead on.
    return end && begin_ && !precedes(*begin_, *end) ? std::nullopt : end;
}

std::string SpanWalk::SpanText() {
    std::vector<const UnitedSelect*> filled;
    for (const UnitedSelect& select : selects_) {
        if (Number(session_, "SELECT 1 FROM " + TableOf(select) + Where() + " LIMIT 1")) {
            filled.push_back(&select);
        }
    }
    if (filled.size() == 1) {
        return RunText(*filled[0]);
    }
    std::vector<std::string> texts;
    texts.reserve(selects_.size());
    for (const UnitedSelect& select : selects_) {
        texts.push_back(select.text + Where());
    }
    return utils::Join(texts, " UNION ALL ") + OrderedBy(column_);
}

// The rows of the span where one table has all of them.
std::string SpanWalk::RunText(const UnitedSelect& select) {
    std::string by_index = select.text + Where() + OrderedBy(column_);
    if (to_skip_ > 0) {
        --to_skip_;
        return by_index;
    }
    std::string run;
    soci::indicator indicator = soci::i_null;
    session_.GetRawSession() << "SELECT " + std::string(kRunFunction) + "(" + column_ +
                                    ", rowid) FROM " + TableOf(select) + Where(),
        soci::into(run, indicator);
    if (indicator == soci::i_null) {
        skipped_ = to_skip_ = std::min(2 * skipped_ + 1, kMostSkipped);
        return by_index;
    }
    skipped_ = 0;
    return select.text + " WHERE rowid BETWEEN " + run + OrderedBy("rowid");
}

std::string SpanWalk::OrderedBy(const std::string& column) const {
    return " ORDER BY " + column + (descending_ ? " DESC" : " ASC");
}

std::string SpanWalk::Where() const {
    std::vector<std::string> bounds;
    if (begin_) {
        bounds.push_back(column_ + (descending_ ? " < " : " > ") + std::to_string(*begin_));
    }
    if (end_) {
        bounds.push_back(column_ + (descending_ ? " >= " : " <= ") + std::to_string(*end_));
    }
    return bounds.empty() ? "" : " WHERE " + utils::Join(bounds, " AND ");
}

}  // namespace serverlog::db::internal
