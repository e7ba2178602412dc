#include "process/sqlite_mode.h"

#include <sqlite3.h>

namespace serverlog::program {

void PrepareSqlite() {
    sqlite3_config(SQLITE_CONFIG_MULTITHREAD);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

}  // namespace serverlog::program
