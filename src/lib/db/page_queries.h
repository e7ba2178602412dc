#pragma once

#include <mailserver-log/db/union_all_select.h>
#include <merodbquery/condition.h>
#include <merodbquery/session.h>

#include <string>
#include <vector>

#include "db/page.h"

namespace serverlog::db::internal {

/// A schema of a session with the number of its rows that match.
struct CountedSchema {
    std::string name;
    unsigned long rows;
};

/// What a page is taken from.
struct PageSource {
    merodbquery::Session& session;
    const std::string& table;
    const merodbquery::Condition& condition;
    const std::string& sort;
    const std::vector<CountedSchema>& schemas;
};

/// A statement that is composed already.
class PageQuery : public UnionAllSelectQuery {
 public:
    /// @param times  how often the condition stands in the text
    PageQuery(const merodbquery::Session& session, std::string text,
              const merodbquery::Condition& condition, std::size_t times);

    std::string GetQuery() override;

 private:
    std::string text_;
    std::size_t times_;
};

/// Queries that together give exactly the rows of a page, one behind the other, faster than the
/// plain union of the schemas does: a page far from both ends of an unrestricted list, and a page
/// near an end of a list that SQLite would sort as a whole.
///
/// @return empty when the plain union is as good, or where the order of its rows can't be told
///         beforehand. Throws soci::soci_error when a schema can't be read.
std::vector<PageQuery> PageQueries(const PageSource& source, const Page& page);

}  // namespace serverlog::db::internal
