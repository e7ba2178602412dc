#include "db/sort_order.h"

#include <merodbquery/select_query.h>
#include <soci/soci.h>

#include "utils/strings.h"

namespace serverlog::db::internal {

namespace {

/// The plan of a select, a step a row: see https://www.sqlite.org/eqp.html.
class PlanQuery : public merodbquery::SelectQuery {
 public:
    using SelectQuery::SelectQuery;

    std::string GetQuery() override { return "EXPLAIN QUERY PLAN " + SelectQuery::GetQuery(); }
};

}  // namespace

std::string IndexFor(merodbquery::Session& session, const std::string& schema,
                     const std::string& table, const std::string& column) {
    const auto columns_of = [&schema](const char* place) {
        return "pragma_index_info(list.name, '" + schema + "') AS " + place;
    };
    std::string name;
    // Left empty where no row comes.
    session.GetRawSession()
        << "SELECT list.name FROM pragma_index_list('" + table + "', '" + schema + "') AS list, " +
               columns_of("first") +
               " WHERE NOT list.partial AND first.seqno = 0 AND first.name = '" + column +
               "' AND NOT EXISTS (SELECT 1 FROM " + columns_of("further") +
               " WHERE further.seqno > 0)",
        soci::into(name);
    return name;
}

bool HasNull(merodbquery::Session& session, const std::string& table, const std::string& column) {
    int found = 0;
    session.GetRawSession() << "SELECT EXISTS (SELECT 1 FROM " + table + " WHERE " + column +
                                   " IS NULL)",
        soci::into(found);
    return found != 0;
}

bool SortsAnEquality(merodbquery::Session& session, const std::string& table,
                     const merodbquery::Condition& condition, const std::string& sort) {
    merodbquery::PositionBinder unused;
    if (condition.GetExpression(unused).find(" OR ") != std::string::npos) {
        return false;  // the plan of several equalities may look the same
    }
    int id = 0;
    int parent = 0;
    int not_used = 0;
    std::string step;
    PlanQuery plan(session, table);
    plan.Bind(soci::into(id));
    plan.Bind(soci::into(parent));
    plan.Bind(soci::into(not_used));
    plan.Bind(soci::into(step));
    plan.Where(condition);
    plan.OrderBy(sort, merodbquery::SelectBase::ASC);
    plan.ExecuteWithoutPreFetch();
    bool looks_up_equal = false;
    bool sorts = false;
    while (plan.Fetch()) {
        looks_up_equal =
            looks_up_equal || (utils::Startswith(step, "SEARCH ") && utils::Endswith(step, "=?)"));
        sorts = sorts || step == "USE TEMP B-TREE FOR ORDER BY";
    }
    return looks_up_equal && sorts;
}

}  // namespace serverlog::db::internal
