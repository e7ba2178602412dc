#include <mailserver-log/db/select_query_expose.h>

#include <utility>

namespace serverlog::db {

SelectQueryExpose::SelectQueryExpose(const merodbquery::Session& session, std::string table)
    : SelectQuery(session, std::move(table)) {}

std::string SelectQueryExpose::GetQuery() {
    return ComposeQuery(GetTable(), GetCondition(), Binder());
}

}  // namespace serverlog::db
