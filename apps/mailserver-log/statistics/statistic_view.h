#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "output/table_writer.h"
#include "statistics/statistic_rows.h"

namespace serverlog::program {

/// Writes the statistics as tables: all counts and threats, one line a period or a threat, and of
/// the addresses and places those of the newest period. Where the style has colours each line ends
/// with a small bar.
///
/// @param scale  tells how exact a time is shown, in local time
void WriteStatisticTables(std::ostream& out, const std::vector<StatisticRow>& rows,
                          const std::string& scale, TableWriter::Style style);

/// Writes them as CSV with one line a row, times in local time.
void WriteStatisticCsv(std::ostream& out, const std::vector<StatisticRow>& rows);

/// Writes them as a JSON array with an object a row, times in seconds since the epoch.
void WriteStatisticJson(std::ostream& out, const std::vector<StatisticRow>& rows);

}  // namespace serverlog::program
