#pragma once

#include <mailserver-log/webapi/base_db_query_api.h>

#include "db/read_transaction.h"
#include "webapi/open_store.h"

namespace serverlog::webapi {

template <class DB>
BaseDBQueryAPI::Rows<DB> BaseDBQueryAPI::ListStore(const std::string& db_path,
                                                   const std::string& reason) {
    Rows<DB> rows;
    internal::WithStoreAsRoot<DB>(db_path, reason, [&](DB& store) {
        auto& table = store.MainTable();
        const std::string sort = GetSort(table.Columns());
        const merodbquery::Condition condition = GetCond(table.Columns());
        // Counts and page are statements of their own.
        const db::ReadTransaction one_picture(store.GetSession());
        rows = table.UnionList(condition, sort, sort_direction_, offset_, static_cast<int>(limit_),
                               store.Schemas());
    });
    return rows;
}

template <class DB, class Row>
db::UnionAllSelectQuery BaseDBQueryAPI::StepStore(DB& store, Row& row) {
    offset_ = 0;
    limit_ = -1;
    auto& table = store.MainTable();
    const std::string sort = GetSort(table.Columns());
    const merodbquery::Condition condition = GetCond(table.Columns());
    return table.UnionStepList(condition, sort, sort_direction_, offset_, static_cast<int>(limit_),
                               store.Schemas(), row);
}

}  // namespace serverlog::webapi
