#pragma once

#include <mailserver-log/db/crea_table.h>
#include <soci/soci.h>

#include <memory>
#include <utility>

namespace serverlog::db {

template <class T>
CreaTable<T>::CreaTable(merodbquery::Session& session, std::string table)
    : row_(std::make_unique<T>()), insert_(session, std::move(table)) {
    insert_.SetInsertAll(row_->GetInsertFields());
    insert_.Bind(soci::use(*row_));
}

template <class T>
bool CreaTable<T>::Create(const T& record) {
    *row_ = record;
    return insert_.Execute();
}

}  // namespace serverlog::db
