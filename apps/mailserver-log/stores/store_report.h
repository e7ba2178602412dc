#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "stores/store_facts.h"

namespace serverlog::program {

/// Something that is wrong, and what to do about it.
struct Problem {
    std::string what;
    std::string remedy;
};

/// What one file of a store holds.
struct FileReport {
    std::string path;
    bool exists = false;
    std::uint64_t size = 0;   ///< in bytes, with that of its write-ahead log
    std::time_t written = 0;  ///< when it was last written
    std::string unreadable;   ///< why it can't be read; empty when it can
    long long version = 0;
    long long rows = 0;
    long long rows_before_today = 0;
    std::optional<long long> oldest;  ///< in seconds since the epoch
    std::optional<long long> newest;
    std::vector<std::string> missing_indices;
};

/// What the files of a store hold, and what is wrong with them.
struct StoreReport {
    std::string name;
    FileReport current;
    FileReport long_term;
    FileReport archive;
    bool operation_under_way = false;  ///< it is rotated, archived or upgraded right now
    std::vector<Problem> problems;
};

/// Looks at a store without creating or changing anything. Never throws but std::bad_alloc.
StoreReport ExamineStore(const StoreFacts& facts);

}  // namespace serverlog::program
