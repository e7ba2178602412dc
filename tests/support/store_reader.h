#pragma once

#include <string>

#include "support/child.h"
#include "support/signpost.h"

namespace test {

/// A process of its own that reads an SQLite file and keeps to that picture of it until it is told
/// to end.
class StoreReader {
 public:
    /// Returns once it has read.
    ///
    /// @param query  what it reads first, which fixes the picture
    StoreReader(const std::string& path, const std::string& query);

    /// Lets it end: "read" when all went well for it. To be called once.
    std::string Finish();

 private:
    Signpost started_;
    Signpost finish_;
    Child child_;
};

}  // namespace test
