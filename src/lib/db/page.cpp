#include "db/page.h"

#include <algorithm>
#include <limits>

namespace serverlog::db::internal {

Page FromNearerEnd(unsigned long total, Page page) {
    if (page.offset <= static_cast<int>(total >> 1U)) {
        return page;
    }
    // Wider than the fields, so that no pair of numbers from outside can overflow.
    long long offset = static_cast<long long>(total) - page.offset - page.limit;
    if (offset < 0) {
        page.limit = static_cast<int>(page.limit + offset);
        offset = 0;
    }
    constexpr long long kMost = std::numeric_limits<int>::max();
    return {static_cast<int>(std::min(offset, kMost)), page.limit, !page.descending, true};
}

}  // namespace serverlog::db::internal
