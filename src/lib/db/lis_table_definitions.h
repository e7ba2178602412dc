#pragma once

#include <mailserver-log/db/lis_table.h>
#include <mailserver-log/db/select_query_expose.h>
#include <mailserver-log/record/columns.h>
#include <merodbquery/select_query.h>
#include <soci/soci.h>

#include <algorithm>
#include <type_traits>
#include <utility>

#include "db/page.h"
#include "db/page_queries.h"
#include "utils/db_command.h"

namespace serverlog::db {

namespace internal {

/// Only the exact text means ascending.
inline bool IsDescending(const std::string& order) {
    return order != "ASC";
}

inline UnionBase::Order UnionOrder(bool descending) {
    return descending ? UnionBase::DESC : UnionBase::ASC;
}

/// The number of rows of a select, which selects all columns again afterwards.
unsigned long Count(SelectQueryExpose& select);

/// Adds a record that a row was fetched into, and leaves it fit for the next row.
///
/// Its texts are moved, since the next row replaces them all: copies would be made twice. Its JSON
/// values stay as well, for a text that is no JSON may leave the one of the row before.
template <class T>
void Add(T& record, std::vector<T>& records) {
    records.push_back(std::move(record));
    record::ForEachColumn<T>([&](const auto& column) {
        using Member = decltype(column.member);
        if constexpr (std::is_same_v<Member, Json::Value T::*>) {
            record.*column.member = records.back().*column.member;
        }
    });
}

/// Adds the rows of a query that was run. False, with the rows so far, if one can't be fetched.
template <class T>
bool FetchAll(UnionAllSelectQuery& query, T& record, std::vector<T>& records) {
    while (query.Fetch()) {
        Add(record, records);
    }
    return query.ErrorText().empty();
}

}  // namespace internal

template <class T>
LisTable<T>::LisTable(merodbquery::Session& session, std::string table)
    : table_(std::move(table)), session_(session) {}

template <class T>
std::vector<T> LisTable<T>::List() {
    return List(merodbquery::Condition::Null(), "", "");
}

template <class T>
std::vector<T> LisTable<T>::List(const merodbquery::Condition& condition) {
    return List(condition, "", "");
}

template <class T>
std::vector<T> LisTable<T>::List(const merodbquery::Condition& condition, const std::string& sort,
                                 const std::string& order) {
    T record;
    merodbquery::SelectQuery query(session_, table_);
    query.Bind(soci::into(record));
    if (!sort.empty() && !order.empty()) {
        query.OrderBy(sort, internal::IsDescending(order) ? merodbquery::SelectBase::DESC
                                                          : merodbquery::SelectBase::ASC);
    }
    query.Where(condition);
    query.ExecuteWithoutPreFetch();
    std::vector<T> records;
    if (!condition.IsSet()) {
        // Counting takes a hundredth of the time, and saves the tenth that a growing vector takes
        // to move its rows.
        SelectQueryExpose all(session_, table_);
        records.reserve(internal::Count(all));
    }
    while (query.Fetch()) {
        internal::Add(record, records);
    }
    return records;
}

template <class T>
std::tuple<unsigned long, std::vector<T>> LisTable<T>::UnionList(
    const merodbquery::Condition& condition, const std::string& sort, const std::string& order,
    const std::vector<std::string>& schemas) {
    return UnionList(condition, sort, order, 0, -1, schemas);
}

template <class T>
std::tuple<unsigned long, std::vector<T>> LisTable<T>::UnionList(
    const merodbquery::Condition& condition, const std::string& sort, const std::string& order,
    int offset, int limit, const std::vector<std::string>& schemas) {
    UnionAllSelectQuery query(session_);
    std::vector<internal::CountedSchema> counted;
    unsigned long total = 0;
    for (const std::string& schema : schemas) {
        SelectQueryExpose select(session_, schema + "." + table_);
        select.Where(condition);
        counted.push_back({schema, internal::Count(select)});
        total += counted.back().rows;
        query.UnionAll(select);
    }
    const internal::Page page = internal::FromNearerEnd(
        total, {offset, limit, internal::IsDescending(order), /*reversed=*/false});
    if (!sort.empty()) {
        query.OrderBy(sort, internal::UnionOrder(page.descending));
    }
    query.Offset(page.offset);
    query.Limit(page.limit);
    T record;
    query.Bind(soci::into(record));
    query.ExecuteWithoutPreFetch();
    std::vector<T> records;
    auto faster = internal::PageQueries({session_, table_, condition, sort, counted}, page);
    if (faster.empty() && total > 0) {
        // Without a row to come SQLite would look through all of them once more to find none.
        internal::FetchAll(query, record, records);
    }
    for (internal::PageQuery& part : faster) {
        part.Bind(soci::into(record));
        part.ExecuteWithoutPreFetch();
        if (!internal::FetchAll(part, record, records)) {
            break;
        }
    }
    if (page.reversed) {
        std::reverse(records.begin(), records.end());
    }
    return {total, std::move(records)};
}

template <class T>
UnionAllSelectQuery LisTable<T>::UnionStepList(const merodbquery::Condition& condition,
                                               const std::string& sort, const std::string& order,
                                               int offset, int limit,
                                               const std::vector<std::string>& schemas, T& record) {
    UnionAllSelectQuery query = StepQuery(condition, sort, order, offset, limit, schemas);
    query.Bind(soci::into(record));
    return query;
}

template <class T>
UnionAllSelectQuery LisTable<T>::UnionStepList(const merodbquery::Condition& condition,
                                               const std::string& sort, const std::string& order,
                                               int offset, int limit,
                                               const std::vector<std::string>& schemas,
                                               record::RowView<T>& row) {
    UnionAllSelectQuery query = StepQuery(condition, sort, order, offset, limit, schemas);
    query.Bind(soci::into(row));
    return query;
}

template <class T>
UnionAllSelectQuery LisTable<T>::StepQuery(const merodbquery::Condition& condition,
                                           const std::string& sort, const std::string& order,
                                           int offset, int limit,
                                           const std::vector<std::string>& schemas) {
    UnionAllSelectQuery query(session_);
    for (const std::string& schema : schemas) {
        SelectQueryExpose select(session_, schema + "." + table_);
        select.Where(condition);
        query.UnionAll(select);
    }
    if (!sort.empty()) {
        query.OrderBy(sort, internal::UnionOrder(internal::IsDescending(order)));
    }
    query.Offset(offset);
    query.Limit(limit);
    return query;
}

template <class T>
std::vector<std::string> LisTable<T>::Columns() {
    return utils::EnumColumns(session_, table_, utils::kMostColumns);
}

}  // namespace serverlog::db
