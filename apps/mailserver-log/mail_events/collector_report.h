#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "stores/store_report.h"

namespace serverlog::program {

/// What the collector of mail events has done in all its runs, as the state file tells it.
struct CollectorReport {
    long long lines = 0;
    long long mail = 0;
    long long security = 0;
    long long skipped = 0;
    long long unreadable = 0;
    long long in_flight = 0;      ///< mails whose end is not known
    std::time_t newest_line = 0;  ///< stamp of the last line that could be read; 0 for none
    std::time_t read_at = 0;      ///< when that was stored
    std::vector<std::string> skipped_by_program;  ///< "program count", the most frequent first
    std::vector<Problem> problems;
};

/// Looks without changing anything. Never throws but std::bad_alloc.
CollectorReport ExamineCollector();

}  // namespace serverlog::program
