#include "page_cache.h"

#include <sqlite3.h>

namespace serverlog::endpoint {

namespace {

constexpr int kPages = 64;
// SQLite's usual page, and more than it keeps beside each. What fits in no slot is allocated.
constexpr int kSlotSize = 4096 + 512;

}  // namespace

void KeepPageCacheSmall() {
    alignas(8) static char memory[kPages * kSlotSize];
    // As long as few of the slots are free, SQLite takes the page that was not used for the longest
    // time; changed pages get other memory when there is none left.
    sqlite3_config(SQLITE_CONFIG_PAGECACHE, memory, kSlotSize, kPages);
}

}  // namespace serverlog::endpoint
