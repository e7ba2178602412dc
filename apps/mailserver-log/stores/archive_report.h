#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "stores/store_report.h"

namespace serverlog::program {

/// What waits to be archived, and what is wrong with where it goes.
struct ArchiveReport {
    bool enabled = false;
    std::string destination;
    std::time_t last_plain_log = 0;  ///< the newest one that was archived; 0 for none
    std::size_t plain_logs = 0;      ///< how many plain text mail logs wait
    long long rows = 0;              ///< how many rows wait
    std::vector<Problem> problems;
};

/// Looks without changing anything.
///
/// @param stores  for the rows that wait
ArchiveReport ExamineArchive(const std::vector<StoreReport>& stores);

}  // namespace serverlog::program
