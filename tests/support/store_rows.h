#pragma once

#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/record/columns.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "support/json_value.h"

namespace test {

/// Adds rows to the store at `path`, which is made if it is missing, in one transaction over a
/// connection of its own.
template <class DB>
void AddRows(const std::string& path,
             const std::vector<typename serverlog::db::StoreTraits<DB>::Record>& rows) {
    serverlog::db::Provider provider(path);
    DB store = provider.Get<DB>(false);
    store.GetSession().RawQuery("BEGIN");
    for (const auto& row : rows) {
        if (!store.MainTable().Create(row)) {
            throw std::runtime_error("cannot add a row to " + path);
        }
    }
    if (!store.GetSession().RawQuery("COMMIT")) {
        throw std::runtime_error("cannot commit to " + path);
    }
}

/// The same for rows as JSON objects. What one lacks is empty, or 0.
template <class DB>
void AddJsonRows(const std::string& path, const std::vector<std::string>& rows) {
    using Record = typename serverlog::db::StoreTraits<DB>::Record;
    std::vector<Record> records;
    for (const std::string& row : rows) {
        records.push_back(serverlog::record::FromJson<Record>(JsonOf(row)));
    }
    AddRows<DB>(path, records);
}

}  // namespace test
