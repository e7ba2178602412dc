#pragma once

#include <mailserver-log/db/union_all_select.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/row_view.h>
#include <merodbquery/condition.h>
#include <merodbquery/session.h>

#include <string>
#include <tuple>
#include <vector>

namespace serverlog::db {

/// The read side of a log table of records T. The library holds it for its three records.
///
/// In all functions `sort` is the name of a column, put into SQL as it is and so never from
/// outside; `order` is "ASC" for ascending, while any other text means descending; `schemas` are
/// the schema names of the databases that hold the table, "main" and attached ones, each given
/// once.
///
/// Nothing here catches: soci::soci_error of a statement, and what T throws for a row that it can't
/// take, reach the caller, but for what UnionAllSelectQuery::Fetch says.
template <class T>
class MAILSERVER_LOG_EXPORT LisTable {
 public:
    /// @param session  must outlive this object
    LisTable(merodbquery::Session& session, std::string table);
    virtual ~LisTable() = default;

    /// All rows of the session's main schema, in no set order.
    virtual std::vector<T> List();

    /// The rows of the main schema that match, in no set order.
    virtual std::vector<T> List(const merodbquery::Condition& condition);

    /// The rows of the main schema that match. Ordered only if both `sort` and `order` are given.
    virtual std::vector<T> List(const merodbquery::Condition& condition, const std::string& sort,
                                const std::string& order);

    /// All rows of all schemas that match, with their number. Ordered if `sort` is given.
    virtual std::tuple<unsigned long, std::vector<T>> UnionList(
        const merodbquery::Condition& condition, const std::string& sort, const std::string& order,
        const std::vector<std::string>& schemas);

    /// One page of the rows of all schemas that match, with the number of all that match.
    ///
    /// A page behind the middle is read from the far end, so that SQLite never skips more than
    /// about half of the rows. That arithmetic takes `limit` as a number, -1 too, so two results
    /// are odd, and are meant to stay: an offset greater than the total gives the whole table, and
    /// an offset behind the middle without a limit gives the first offset - 1 rows.
    ///
    /// @param offset  the number of rows to skip
    /// @param limit   the most rows to give; -1 means all
    virtual std::tuple<unsigned long, std::vector<T>> UnionList(
        const merodbquery::Condition& condition, const std::string& sort, const std::string& order,
        int offset, int limit, const std::vector<std::string>& schemas);

    /// The same union for reading row by row: not counted, not run, not read from the far end.
    ///
    /// @param record  holds the row after each Fetch of the result, which it must outlive
    virtual UnionAllSelectQuery UnionStepList(const merodbquery::Condition& condition,
                                              const std::string& sort, const std::string& order,
                                              int offset, int limit,
                                              const std::vector<std::string>& schemas, T& record);

    /// The same into a view, without copies of the texts.
    ///
    /// @param row  as `record`
    UnionAllSelectQuery UnionStepList(const merodbquery::Condition& condition,
                                      const std::string& sort, const std::string& order, int offset,
                                      int limit, const std::vector<std::string>& schemas,
                                      record::RowView<T>& row);

    /// The names of the table's columns, at most 32, in the order of the schema. Empty, with an
    /// error line, if they can't be read.
    std::vector<std::string> Columns();

 private:
    UnionAllSelectQuery StepQuery(const merodbquery::Condition& condition, const std::string& sort,
                                  const std::string& order, int offset, int limit,
                                  const std::vector<std::string>& schemas);

    std::string table_;
    merodbquery::Session& session_;
};

}  // namespace serverlog::db
