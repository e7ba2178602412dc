#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/utils/error_line.h>

#include <exception>

#include "utils/strings.h"

namespace serverlog::db {

UnionAllSelectQuery::UnionAllSelectQuery(const merodbquery::Session& session)
    : ConditionalQuery(session, "not important") {}

void UnionAllSelectQuery::UnionAll(SelectQueryExpose& select) {
    selects_.push_back(select.GetQuery());
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

void UnionAllSelectQuery::ExecuteWithoutPreFetch() {
    PrepareAndExecute(false);
}

bool UnionAllSelectQuery::Fetch() {
    try {
        return FetchNext();
    } catch (const std::exception& error) {
        // soci::soci_error, or std::bad_cast of a column of another declared type.
        SERVERLOG_ERROR_LINE("Query fetch failed: %s", error.what());
        SetErrorText(error.what());
        return false;
    }
}

}  // namespace serverlog::db
