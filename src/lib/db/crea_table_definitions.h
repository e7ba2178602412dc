#pragma once

#include <mailserver-log/db/crea_table.h>
#include <merodbquery/insert_query.h>
#include <soci/soci.h>

namespace serverlog::db {

template <class T>
bool CreaTable<T>::Create(const T& record) {
    merodbquery::InsertQuery query(session_, table_);
    query.SetInsertAll(record.GetInsertFields());
    query.Bind(soci::use(record));
    return query.Execute();
}

}  // namespace serverlog::db
