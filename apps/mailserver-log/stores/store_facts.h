#pragma once

#include <merodbquery/session.h>
#include <soci/soci.h>

#include <sstream>
#include <string>
#include <vector>

namespace serverlog::program {

/// What a store of this release should be like.
struct StoreFacts {
    std::string name;
    std::string current;
    std::string long_term;
    std::string archive;
    std::string work;
    std::string operation_lock;
    std::string table;
    std::string date_column;
    int version = 0;
    std::vector<std::string> indices;  ///< sorted
};

/// The facts of a store, a class of stores.h. They come from a store in memory.
template <class Store>
StoreFacts FactsOf() {
    merodbquery::Session session = merodbquery::Session::SQLite(":memory:");
    typename Store::DB store(session);
    std::istringstream script(store.CreateSchema());
    for (std::string statement; std::getline(script, statement, ';');) {
        session.RawQuery(statement);
    }
    StoreFacts facts = {Store::kName,
                        Store::kPath,
                        Store::kMainPath,
                        Store::kArchivePath,
                        Store::kWorkPath,
                        Store::kOperationLock,
                        store.RotateTable(),
                        store.RotateDateFields(),
                        static_cast<int>(store.UpgradeFuncs().size()) - 1,
                        {}};
    const soci::rowset<std::string> names =
        (session.GetRawSession().prepare
         << "SELECT name FROM sqlite_schema WHERE type = 'index' ORDER BY name");
    facts.indices.assign(names.begin(), names.end());
    return facts;
}

}  // namespace serverlog::program
