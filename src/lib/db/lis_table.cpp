#include "db/lis_table_definitions.h"

namespace serverlog::db::internal {

unsigned long Count(SelectQueryExpose& select) {
    int count = 0;
    select.SetColumns({"COUNT(*)"});
    select.Bind(soci::into(count));
    select.ExecuteWithoutPreFetch();
    unsigned long total = 0;
    while (select.Fetch()) {
        total += static_cast<unsigned long>(count);
    }
    select.SetColumns({});
    return total;
}

}  // namespace serverlog::db::internal
