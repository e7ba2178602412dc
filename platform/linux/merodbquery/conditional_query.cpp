#include <merodbquery/conditional_query.h>

namespace merodbquery {

ConditionalQuery::ConditionalQuery(const Session& session, std::string table)
    : Query(session), table_(std::move(table)) {}

}  // namespace merodbquery
