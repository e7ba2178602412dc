#include <mailserver-log/db/union_base.h>

#include <sstream>
#include <utility>

#include "utils/strings.h"

namespace serverlog::db {

namespace {

constexpr char kAscending[] = " ASC";
constexpr char kDescending[] = " DESC";

}  // namespace

void UnionBase::OrderBy(std::string field, Order order) {
    orders_.push_back(std::move(field) + (order != ASC ? kDescending : kAscending));
}

std::optional<UnionBase::Term> UnionBase::OnlyTerm() const {
    const bool has_more = !group_.empty() || having_.IsSet() || limit_ != kNoLimit || offset_ != 0;
    if (has_more || orders_.size() != 1) {
        return std::nullopt;
    }
    const std::string& term = orders_.front();
    const std::size_t end = term.rfind(' ');
    return Term{term.substr(0, end), term.substr(end) == kAscending ? ASC : DESC};
}

void UnionBase::GroupBy(std::string group) {
    group_ = std::move(group);
}

void UnionBase::Limit(int limit) {
    limit_ = limit < 0 ? kNoLimit : limit;
}

void UnionBase::Offset(int offset) {
    offset_ = offset < 0 ? 0 : offset;
}

void UnionBase::Having(const merodbquery::Condition& having) {
    having_ = having;
}

std::string UnionBase::ComposeQuery(const merodbquery::Condition& condition,
                                    merodbquery::PositionBinder& binder) const {
    // Only for its effect on the binder: the selects that stand in front hold the text.
    condition.GetExpression(binder);
    std::ostringstream text;
    if (!group_.empty()) {
        text << " GROUP BY " << group_;
    }
    if (having_.IsSet()) {
        text << " HAVING " << having_.GetExpression(binder);
    }
    if (!orders_.empty()) {
        text << " ORDER BY " << utils::Join(orders_, ", ");
    }
    // SQLite takes no offset without a limit.
    const bool is_sqlite = binder.GetKind() == merodbquery::DatabaseKind::kSQLite;
    if (limit_ >= 0 || (offset_ > 0 && is_sqlite)) {
        text << " LIMIT " << limit_;
    }
    if (offset_ > 0) {
        text << " OFFSET " << offset_;
    }
    return text.str();
}

}  // namespace serverlog::db
