#pragma once

#include <string>

namespace bench {

/// What the generated mail log stores hold.
struct StoreSizes {
    int current_rows = 200'000;
    int long_term_rows = 4'000'000;
    int addresses = 50'000;
};

/// The sizes that the command line asks for.
StoreSizes& Sizes();

/// Makes the mail log's store and its long-term file, unless they are there with these sizes: the
/// long-term file over 90 days, the current one over the day behind them. Throws on any failure.
void MakeStores();

/// Makes the security log's two files, with a tenth of the rows over the same days, unless they are
/// there. Throws as MakeStores.
void MakeSecurityStores();

/// Just behind the newest row, in seconds since the epoch.
long EndOfRows();

/// The paths of the mail log's two files.
extern const std::string kCurrentPath;
extern const std::string kLongTermPath;

}  // namespace bench
