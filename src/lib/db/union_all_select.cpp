#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/utils/error_line.h>

#include <exception>
#include <utility>

#include "db/span_walk.h"
#include "utils/strings.h"

namespace serverlog::db {

UnionAllSelectQuery::UnionAllSelectQuery(const merodbquery::Session& session)
    : ConditionalQuery(session, "not important"), session_(session) {}

UnionAllSelectQuery::~UnionAllSelectQuery() = default;
UnionAllSelectQuery::UnionAllSelectQuery(UnionAllSelectQuery&& other) noexcept = default;

void UnionAllSelectQuery::UnionAll(SelectQueryExpose& select) {
    selects_.push_back(select.GetQuery());
    tables_.push_back(select.GetTable());
    Where(GetCondition() && select.GetCondition());
}

std::string UnionAllSelectQuery::GetQuery() {
    if (selects_.empty()) {
        return "";
    }
    return utils::Join(selects_, " UNION ALL ") + ComposeQuery(GetCondition(), Binder());
}

bool UnionAllSelectQuery::IsFetchingDataQuery() const {
    return true;
}

bool UnionAllSelectQuery::Execute() {
    EndWalk();
    return ConditionalQuery::Execute();
}

void UnionAllSelectQuery::ExecuteWithoutPreFetch() {
    EndWalk();
    // The plain statement in any case, so that it fails as that does. It looks for no row yet.
    PrepareAndExecute(false);
    may_walk_ = true;
}

void UnionAllSelectQuery::EndWalk() {
    walk_.reset();
    may_walk_ = false;
}

std::unique_ptr<internal::SpanWalk> UnionAllSelectQuery::BeginWalk() const {
    const std::optional<Term> term = OnlyTerm();
    if (!term || GetCondition().IsSet()) {
        return nullptr;
    }
    std::vector<internal::UnitedSelect> selects;
    for (std::size_t i = 0; i < selects_.size(); ++i) {
        const std::size_t point = tables_[i].find('.');
        if (point == std::string::npos || !utils::Endswith(selects_[i], " FROM " + tables_[i])) {
            return nullptr;
        }
        selects.push_back({selects_[i], tables_[i].substr(0, point), tables_[i].substr(point + 1)});
    }
    return internal::SpanWalk::Begin(session_, std::move(selects), *term, *this);
}

bool UnionAllSelectQuery::Fetch() {
    try {
        if (std::exchange(may_walk_, false)) {
            walk_ = BeginWalk();
        }
        if (!walk_) {
            return FetchNext();
        }
        const bool fetched = walk_->Fetch();
        if (!fetched) {
            SetErrorText(walk_->ErrorText());
        }
        return fetched;
    } catch (const std::exception& error) {
        // soci::soci_error, or std::bad_cast of a column of another declared type.
        SERVERLOG_ERROR_LINE("Query fetch failed: %s", error.what());
        SetErrorText(error.what());
        return false;
    }
}

}  // namespace serverlog::db
