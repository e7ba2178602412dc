#include <merodbquery/select_query.h>

namespace merodbquery {

SelectQuery::SelectQuery(const Session& session, std::string table)
    : ConditionalQuery(session, std::move(table)) {}

std::string SelectQuery::GetQuery() {
    return ComposeQuery(GetTable(), GetCondition(), Binder());
}

void SelectQuery::ExecuteWithoutPreFetch() {
    PrepareAndExecute(false);
}

}  // namespace merodbquery
