#pragma once

#include <mailserver-log/db/provider.h>

#include <string>

#include "process/failure.h"

namespace serverlog::program {

/// One log store, open for one thread; Store is a class of stores.h.
template <class Store>
class OpenedStore {
 public:
    using DB = typename Store::DB;

    /// Throws Failure if the store can't be opened.
    explicit OpenedStore(const std::string& path) try
        : provider_(path), db_(provider_.Get<DB>(false)) {
    } catch (...) {
        throw Failure("cannot open the store " + path + ": " + DescribeException() +
                      "; check that its folder exists and that you may write there");
    }

    DB& Get() { return db_; }

 private:
    db::Provider provider_;  // outlives the store, whose link it removes
    DB db_;
};

}  // namespace serverlog::program
