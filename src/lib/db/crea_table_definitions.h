#pragma once

#include <mailserver-log/db/crea_table.h>
#include <soci/soci.h>

#include <utility>

namespace serverlog::db {

template <class T>
CreaTable<T>::CreaTable(merodbquery::Session& session, std::string table)
    : insert_(session, std::move(table)) {
    insert_.SetInsertAll(T().GetInsertFields());
}

template <class T>
bool CreaTable<T>::Create(const T& record) {
    insert_.Bind(soci::use(record));
    return insert_.Execute();
}

}  // namespace serverlog::db
